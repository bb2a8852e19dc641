#include "tests/contract/SecondProcess.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace ostrel {

SecondProcess::SecondProcess(const std::string& test, const std::string& name,
                             const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
  std::string program = "contract", filter = "--gtest_filter=" + test;
  std::string brief = "--gtest_brief=1", noResults = "--gtest_output=";
  char* const arguments[] = {program.data(), filter.data(), brief.data(), noResults.data(),
                             nullptr};
  pid_t started = 0;
  if (posix_spawn(&started, "/proc/self/exe", nullptr, nullptr, arguments, environ) == 0) {
    process = started;
  }
  unsetenv(name.c_str());
}

SecondProcess::~SecondProcess() { Passed(); }

bool SecondProcess::Passed() {
  int status = 0;
  if (const auto ended = static_cast<pid_t>(std::exchange(process, 0))) {
    passed = waitpid(ended, &status, 0) == ended && status == 0;
  }
  return passed;
}

}  // namespace ostrel
