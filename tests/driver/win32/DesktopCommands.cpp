#include <cstring>

#include "tests/driver/win32/Commands.h"
#include "tests/driver/win32/TrayShell.h"

namespace ostrel::driver {
namespace {

void OpenClipboardOrThrow() {
  if (!OpenClipboard(nullptr)) throw CommandError("the clipboard is held by another program");
}

Fields ClipboardText(const Fields&) {
  OpenClipboardOrThrow();
  std::wstring text;
  if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
    text = static_cast<const wchar_t*>(GlobalLock(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return {text};
}

Fields EmptyIt(const Fields&) {
  OpenClipboardOrThrow();
  EmptyClipboard();
  CloseClipboard();
  return {};
}

Fields HoldClipboard(const Fields&) {
  OpenClipboardOrThrow();
  return {};
}

Fields ReleaseClipboard(const Fields&) {
  CloseClipboard();
  return {};
}

HANDLE heldMutex = nullptr;

/// NAME
Fields HoldMutex(const Fields& arguments) {
  heldMutex = CreateMutexW(nullptr, TRUE, arguments[0].c_str());
  if (heldMutex == nullptr || GetLastError() == ERROR_ALREADY_EXISTS) {
    throw CommandError("somebody has this mutex");
  }
  return {};
}

Fields ReleaseHeldMutex(const Fields&) {
  CloseHandle(heldMutex);
  heldMutex = nullptr;
  return {};
}

/// The notification area: opened at the first call, then what programs said to it since the last.
Fields Tray(const Fields&) {
  OpenTrayShell();
  return TakeTrayOperations();
}

constexpr Command kDesktopCommands[] = {
    {L"clipboard", 0, ClipboardText},
    {L"clipboard-empty", 0, EmptyIt},
    {L"clipboard-hold", 0, HoldClipboard},
    {L"clipboard-release", 0, ReleaseClipboard},
    {L"mutex-hold", 1, HoldMutex},
    {L"mutex-release", 0, ReleaseHeldMutex},
    {L"tray", 0, Tray},
};

}  // namespace

std::span<const Command> DesktopCommands() { return kDesktopCommands; }

}  // namespace ostrel::driver
