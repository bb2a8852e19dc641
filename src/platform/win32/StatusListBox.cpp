#include "platform/win32/StatusListBox.h"

#include <algorithm>
#include <string>

#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

// A list box can neither measure nor paint a line of any length.
constexpr std::size_t kLongestStatusLine = 8000;

constexpr DWORD kListStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL |
                             LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_WANTKEYBOARDINPUT;

}  // namespace

void StatusListBox::Create(HWND parent, int controlId) {
  hList = CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", L"", kListStyle, 0, 0, 0, 0, parent,
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(controlId)),
                          GetModuleHandleW(nullptr), nullptr);
}

void StatusListBox::Insert(int index, TextView line) {
  const std::wstring text = ToWide(line.substr(0, kLongestStatusLine));
  const LRESULT top = SendMessageW(hList, LB_GETTOPINDEX, 0, 0);
  const LRESULT at = SendMessageW(hList, LB_INSERTSTRING, static_cast<WPARAM>(index),
                                  reinterpret_cast<LPARAM>(text.c_str()));
  if (at < 0) return;
  oWidths.insert(oWidths.begin() + static_cast<std::ptrdiff_t>(at), WidthOf(text));
  UpdateExtent();
  if (top > 0 && at <= top) SendMessageW(hList, LB_SETTOPINDEX, static_cast<WPARAM>(top) + 1, 0);
}

void StatusListBox::Remove(int index) {
  if (SendMessageW(hList, LB_DELETESTRING, static_cast<WPARAM>(index), 0) < 0) return;
  oWidths.erase(oWidths.begin() + index);
  UpdateExtent();
}

void StatusListBox::SetFont(HFONT font) {
  hFont = font;
  SendMessageW(hList, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  int index = 0;
  for (int& width : oWidths) width = WidthOf(ToWide(LineAt(index++)));
  UpdateExtent();
}

std::optional<Text> StatusListBox::SelectedLine() const {
  const LRESULT index = SendMessageW(hList, LB_GETCURSEL, 0, 0);
  if (index < 0) return std::nullopt;
  return LineAt(static_cast<int>(index));
}

Text StatusListBox::LineAt(int index) const {
  const auto which = static_cast<WPARAM>(index);
  const LRESULT length = SendMessageW(hList, LB_GETTEXTLEN, which, 0);
  if (length <= 0) return {};
  std::wstring line(static_cast<std::size_t>(length) + 1, L'\0');
  SendMessageW(hList, LB_GETTEXT, which, reinterpret_cast<LPARAM>(line.data()));
  line.pop_back();
  return FromWide(line);
}

int StatusListBox::WidthOf(const std::wstring& line) const {
  const HDC screen = GetDC(hList);
  const HGDIOBJ previous = SelectObject(screen, hFont);
  SIZE size{};
  GetTextExtentPoint32W(screen, line.data(), static_cast<int>(line.size()), &size);
  SelectObject(screen, previous);
  ReleaseDC(hList, screen);
  return size.cx;
}

void StatusListBox::UpdateExtent() {
  const auto longest = std::max_element(oWidths.begin(), oWidths.end());
  const int margin = 2 * GetSystemMetrics(SM_CXEDGE) + 4;
  const int extent = longest == oWidths.end() ? 0 : *longest + margin;
  SendMessageW(hList, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(extent), 0);
}

}  // namespace ostrel::platform
