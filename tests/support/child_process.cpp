#include "tests/support/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace support {

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& log) {
  std::vector<char*> arguments;
  for (const auto& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  pid_ = fork();
  if (pid_ != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

ChildProcess::~ChildProcess() {
  kill();
}

void ChildProcess::kill() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
  pid_ = -1;
}

void ChildProcess::freeze() {
  ::kill(pid_, SIGSTOP);
}

void ChildProcess::thaw() {
  ::kill(pid_, SIGCONT);
}

bool ChildProcess::isInstalled(const std::string& program) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(path ? path : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (std::filesystem::exists(std::filesystem::path(folder) / program)) return true;
  }
  return false;
}

}  // namespace support
