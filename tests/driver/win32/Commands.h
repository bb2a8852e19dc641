// The driver's commands, a table a subject. Whoever waits for something asks again: a command looks
// or acts once and never blocks for longer than a moment.
#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "tests/driver/win32/Protocol.h"

namespace ostrel::driver {

struct Command {
  const wchar_t* name;
  std::size_t arguments;
  Fields (*run)(const Fields& arguments);  // raises CommandError
};

std::span<const Command> WindowCommands();
std::span<const Command> MenuCommands();
std::span<const Command> ProcessCommands();
std::span<const Command> DesktopCommands();

/// Windows are named by their handles' numbers.
HWND WindowOf(const std::wstring& field);
std::wstring FieldOf(HWND window);

/// The time that another program has to answer a message, in milliseconds.
inline constexpr UINT kAnswerLimit = 10'000;

/// The answer; raises CommandError when there is none in time.
LRESULT SendTo(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace ostrel::driver
