#include "app/finish_at_exit.h"

#include <cstdlib>
#include <utility>

namespace app {
namespace {

std::function<void()>& toFinish() {
  // Never destroyed, because exit() destroys other objects before it calls us.
  static auto* finish = new std::function<void()>;
  return *finish;
}

void finishNow() {
  if (const auto finish = std::exchange(toFinish(), nullptr)) finish();
}

}  // namespace

FinishAtExit::FinishAtExit(std::function<void()> finish) {
  toFinish() = std::move(finish);
  std::atexit(finishNow);
}

FinishAtExit::~FinishAtExit() {
  toFinish() = nullptr;
}

}  // namespace app
