// The commands that find windows, read them and operate them. Everything goes by messages with a
// time limit, as from a person's hands: a program that hangs fails a command and not the test run.
#include <array>

#include "tests/driver/win32/Commands.h"

namespace ostrel::driver {
namespace {

std::wstring Flag(BOOL value) { return value ? L"1" : L"0"; }

std::wstring ClassOf(HWND window) {
  std::array<wchar_t, 256> name{};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

std::wstring TextOf(HWND window) {
  const auto length = static_cast<std::size_t>(SendTo(window, WM_GETTEXTLENGTH, 0, 0));
  std::wstring text(length + 1, L'\0');
  const LRESULT read =
      SendTo(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(read));
  return text;
}

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process;
}

// --- which windows there are

struct MarkSearch {
  const wchar_t* mark;
  HWND found;
};

BOOL CALLBACK IsNotMarked(HWND window, LPARAM search) {
  auto& asked = *reinterpret_cast<MarkSearch*>(search);
  if (GetPropW(window, asked.mark) != reinterpret_cast<HANDLE>(INT_PTR{1})) return TRUE;
  asked.found = window;
  return FALSE;
}

/// MARK: the window with this property of the value 1 and its process; 0 and 0 when there is none.
Fields FindMarked(const Fields& arguments) {
  MarkSearch search{arguments[0].c_str(), nullptr};
  EnumWindows(IsNotMarked, reinterpret_cast<LPARAM>(&search));
  const DWORD process = search.found == nullptr ? 0 : ProcessOf(search.found);
  return {FieldOf(search.found), std::to_wstring(process)};
}

struct Listing {
  DWORD process;
  Fields fields;
};

/// The title as the system keeps it, without asking a program that may be busy.
std::wstring TitleOf(HWND window) {
  std::wstring title(512, L'\0');
  title.resize(static_cast<std::size_t>(
      InternalGetWindowText(window, title.data(), static_cast<int>(title.size()))));
  return title;
}

BOOL CALLBACK AddTopLevel(HWND window, LPARAM listing) {
  auto& asked = *reinterpret_cast<Listing*>(listing);
  if (ProcessOf(window) != asked.process) return TRUE;
  asked.fields.insert(asked.fields.end(),
                      {FieldOf(window), ClassOf(window), Flag(IsWindowVisible(window)),
                       Flag(IsIconic(window)), Flag(IsWindowEnabled(window)), TitleOf(window)});
  return TRUE;
}

/// PROCESS: of each top-level window six fields.
Fields ListWindows(const Fields& arguments) {
  Listing listing{static_cast<DWORD>(NumberOf(arguments[0])), {}};
  EnumWindows(AddTopLevel, reinterpret_cast<LPARAM>(&listing));
  return std::move(listing.fields);
}

BOOL CALLBACK AddChild(HWND window, LPARAM fields) {
  auto& children = *reinterpret_cast<Fields*>(fields);
  children.insert(children.end(),
                  {FieldOf(window), std::to_wstring(GetDlgCtrlID(window)), ClassOf(window),
                   Flag(IsWindowVisible(window)), Flag(IsWindowEnabled(window)), TextOf(window)});
  return TRUE;
}

/// WINDOW: of each window in it six fields.
Fields ListChildren(const Fields& arguments) {
  const HWND window = WindowOf(arguments[0]);
  if (!IsWindow(window)) throw CommandError("the window is gone");
  Fields fields;
  EnumChildWindows(window, AddChild, reinterpret_cast<LPARAM>(&fields));
  return fields;
}

Fields GetText(const Fields& arguments) { return {TextOf(WindowOf(arguments[0]))}; }

/// WINDOW: left, top, width and height.
Fields GetPlace(const Fields& arguments) {
  RECT place{};
  GetWindowRect(WindowOf(arguments[0]), &place);
  return {std::to_wstring(place.left), std::to_wstring(place.top),
          std::to_wstring(place.right - place.left), std::to_wstring(place.bottom - place.top)};
}

Fields Foreground(const Fields&) { return {FieldOf(GetForegroundWindow())}; }

// --- what is done to them

Fields SetTextOf(const Fields& arguments) {
  SendTo(WindowOf(arguments[0]), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(arguments[1].c_str()));
  return {};
}

/// WINDOW WIDTH HEIGHT
Fields Resize(const Fields& arguments) {
  SetWindowPos(WindowOf(arguments[0]), nullptr, 0, 0, static_cast<int>(NumberOf(arguments[1])),
               static_cast<int>(NumberOf(arguments[2])),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  return {};
}

struct Message {
  HWND window;
  UINT number;
  WPARAM wParam;
  LPARAM lParam;
};

Message MessageOf(const Fields& arguments) {
  return {WindowOf(arguments[0]), static_cast<UINT>(NumberOf(arguments[1])),
          static_cast<WPARAM>(NumberOf(arguments[2])), static_cast<LPARAM>(NumberOf(arguments[3]))};
}

/// WINDOW MESSAGE WPARAM LPARAM
Fields Send(const Fields& arguments) {
  const Message message = MessageOf(arguments);
  return {std::to_wstring(SendTo(message.window, message.number, message.wParam, message.lParam))};
}

Fields Post(const Fields& arguments) {
  const Message message = MessageOf(arguments);
  if (!PostMessageW(message.window, message.number, message.wParam, message.lParam)) {
    throw CommandError("not posted");
  }
  return {};
}

Fields RegisteredMessage(const Fields& arguments) {
  return {std::to_wstring(RegisterWindowMessageW(arguments[0].c_str()))};
}

// --- list boxes

/// Nobody tells the list box how much room there is, and the line may have changed since its length
/// was asked.
constexpr std::size_t kLongestLine = 65536;

std::wstring LineOf(HWND list, WPARAM index) {
  std::wstring line(kLongestLine, L'\0');
  const LRESULT read = SendTo(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(line.data()));
  if (read < 0) throw CommandError("the line is gone");
  line.resize(static_cast<std::size_t>(read));
  return line;
}

Fields ReadLines(HWND list) {
  const auto count = static_cast<WPARAM>(SendTo(list, LB_GETCOUNT, 0, 0));
  Fields lines;
  for (WPARAM index = 0; index < count; ++index) lines.push_back(LineOf(list, index));
  return lines;
}

/// LIST: its lines from the top. What is read while a line is added is no list that ever was: it
/// counts when it is read twice.
Fields ListLines(const Fields& arguments) {
  const HWND list = WindowOf(arguments[0]);
  Fields lines = ReadLines(list);
  for (int attempts = 0; attempts < 10; ++attempts) {
    Fields again = ReadLines(list);
    if (again == lines) return lines;
    lines = std::move(again);
  }
  throw CommandError("the list is changing");
}

/// LIST INDEX: the mouse's double click on the line, which is scrolled into sight.
Fields DoubleClickLine(const Fields& arguments) {
  const HWND list = WindowOf(arguments[0]);
  const auto index = static_cast<WPARAM>(NumberOf(arguments[1]));
  SendTo(list, LB_SETTOPINDEX, index, 0);
  RECT line{};
  SendTo(list, LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&line));
  const LPARAM place = MAKELPARAM(line.left + 4, (line.top + line.bottom) / 2);
  for (const int message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
    PostMessageW(list, static_cast<UINT>(message), message == WM_LBUTTONUP ? 0 : MK_LBUTTON, place);
  }
  return {};
}

constexpr Command kWindowCommands[] = {
    {L"marked", 1, FindMarked},
    {L"windows", 1, ListWindows},
    {L"children", 1, ListChildren},
    {L"text", 1, GetText},
    {L"place", 1, GetPlace},
    {L"foreground", 0, Foreground},
    {L"settext", 2, SetTextOf},
    {L"resize", 3, Resize},
    {L"send", 4, Send},
    {L"post", 4, Post},
    {L"message", 1, RegisteredMessage},
    {L"lines", 1, ListLines},
    {L"doubleclick", 2, DoubleClickLine},
};

}  // namespace

std::span<const Command> WindowCommands() { return kWindowCommands; }

HWND WindowOf(const std::wstring& field) {
  return reinterpret_cast<HWND>(static_cast<INT_PTR>(NumberOf(field)));
}

std::wstring FieldOf(HWND window) { return std::to_wstring(reinterpret_cast<INT_PTR>(window)); }

LRESULT SendTo(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR result = 0;
  if (SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kAnswerLimit, &result) ==
      0) {
    throw CommandError("no answer from the window, error " + std::to_string(GetLastError()));
  }
  return static_cast<LRESULT>(result);
}

}  // namespace ostrel::driver
