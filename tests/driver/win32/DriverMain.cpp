// ostrel-driver.exe: the tests' hands and eyes in Windows. It looks at another program's windows,
// menus and dialogs and does what a user, the shell or another program would do to it; a test tells
// it what, a line at a time, and gets a line of "ok" or "error" with the answer's fields.
#include <array>
#include <iostream>
#include <string>

#include "tests/driver/win32/Commands.h"

namespace ostrel::driver {
namespace {

const Command& CommandNamed(const std::wstring& name) {
  for (const auto& commands :
       {WindowCommands(), MenuCommands(), ProcessCommands(), DesktopCommands()}) {
    for (const Command& command : commands) {
      if (name == command.name) return command;
    }
  }
  throw CommandError("no such command: " + ToUtf8(name));
}

Fields Answer(std::string_view line) {
  Fields arguments = ReadFields(line);
  const Command& command = CommandNamed(arguments.front());
  arguments.erase(arguments.begin());
  if (arguments.size() != command.arguments) throw CommandError("wrong number of arguments");
  Fields answer = command.run(arguments);
  answer.insert(answer.begin(), L"ok");
  return answer;
}

std::string AnswerOrError(std::string_view line) {
  try {
    return WriteFields(Answer(line));
  } catch (const std::exception& error) {
    return WriteFields({L"error", FromUtf8(error.what())});
  }
}

int Main() {
  std::ios::sync_with_stdio(false);
  std::string line;
  while (std::getline(std::cin, line)) std::cout << AnswerOrError(line) << std::endl;
  return 0;
}

}  // namespace
}  // namespace ostrel::driver

int main() { return ostrel::driver::Main(); }
