#include "app/quit_signals.h"

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <csignal>

namespace app {
namespace {

sigset_t quitSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) sigaddset(&set, signal);
  return set;
}

}  // namespace

QuitSignals::QuitSignals() {
  const sigset_t set = quitSignals();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  descriptor_ = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

void QuitSignals::listen() {
  notifier_ = new QSocketNotifier(descriptor_, QSocketNotifier::Read, QCoreApplication::instance());
  QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [this] { quit(); });
}

QuitSignals::~QuitSignals() {
  delete notifier_;
  close(descriptor_);
}

void QuitSignals::quit() {
  signalfd_siginfo received;
  if (read(descriptor_, &received, sizeof received) != sizeof received) return;
  const sigset_t set = quitSignals();
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);  // A second one does not wait for us.
  QCoreApplication::exit();
}

}  // namespace app
