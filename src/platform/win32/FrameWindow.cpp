// The main window: a menu bar, the status list and a notice below it. The window procedure is the
// table in Messages; a handler that belongs to the program runs in Raise, which keeps timers
// running and lets nothing out. A hidden window has no state of its own in Windows, so the state in
// which it is to be shown next is kept here. Everything is laid out in pixels at 96 dots per inch
// and scaled to the screen that the window is on.
#include "platform/win32/FrameWindow.h"

#include "platform/win32/Dpi.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

constexpr int kListControl = 1, kNoticeControl = 2;

// Lengths in pixels at 96 dots per inch.
constexpr int kMargin = 8;
constexpr SIZE kUsualSize{600, 380};
constexpr SIZE kSmallestSize{340, 240};

constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

// A message box does not scroll.
constexpr std::size_t kLongestMessage = 4000;

/// A program that is started hidden or minimised begins as an icon in the notification area.
WindowState StateAskedFor() {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  GetStartupInfoW(&start);
  if ((start.dwFlags & STARTF_USESHOWWINDOW) == 0) return WindowState::kNormal;
  switch (start.wShowWindow) {
    case SW_HIDE:
    case SW_MINIMIZE:
    case SW_SHOWMINIMIZED:
    case SW_SHOWMINNOACTIVE:
    case SW_FORCEMINIMIZE:
      return WindowState::kMinimised;
    default:
      return WindowState::kNormal;
  }
}

UINT CommandFor(WindowState state) {
  switch (state) {
    case WindowState::kMinimised:
      return SW_SHOWMINIMIZED;
    case WindowState::kMaximised:
      return SW_SHOWMAXIMIZED;
    default:
      return SW_SHOWNORMAL;
  }
}

RECT InnerSize(HWND window) {
  RECT inner{};
  GetClientRect(window, &inner);
  return inner;
}

}  // namespace

std::unique_ptr<ApplicationWindow> MakeApplicationWindow(
    const ApplicationWindowDescription& description) {
  return std::make_unique<FrameWindow>(description);
}

UINT RestoreRequest() {
  static const UINT message = RegisterWindowMessageW(L"Ostrel.RestoreRequest");
  return message;
}

FrameWindow::FrameWindow(const ApplicationWindowDescription& description)
    : sTitle(ToWide(description.title)),
      sNotice(ToWide(description.notice)),
      oMenu(description.menus),
      iShownNext(StateAskedFor()) {
  const std::wstring caption = ToWide(description.caption);
  Create({.className = L"OstrelServerWindow", .caption = caption.c_str(), .style = kStyle});
  SetMenu(Handle(), oMenu.Handle());
  oList.Create(Handle(), kListControl);
  hNotice = CreateWindowExW(0, L"STATIC", sNotice.c_str(), WS_CHILD | WS_VISIBLE | SS_NOPREFIX, 0,
                            0, 0, 0, Handle(), reinterpret_cast<HMENU>(INT_PTR{kNoticeControl}),
                            GetModuleHandleW(nullptr), nullptr);
  AllowFromEverybody(Handle(), platform::RestoreRequest());
  AdoptFont();
  const int dpi = DpiOf(Handle());
  SetWindowPos(Handle(), nullptr, 0, 0, Scaled(kUsualSize.cx, dpi), Scaled(kUsualSize.cy, dpi),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  FrameWindow::FitStatusList();
  oSessionEnd.Delay(Handle());
}

/// Messages are not handled any more, since the receivers of events may be gone. The menu is taken
/// out first: it is not the window's to destroy.
FrameWindow::~FrameWindow() {
  Detach();
  SetMenu(Handle(), nullptr);
  Destroy();
}

std::span<const MessageEntry<FrameWindow>> FrameWindow::Messages() {
  static const MessageEntry<FrameWindow> table[] = {
      {WM_COMMAND, &FrameWindow::OnCommand},
      {WM_INITMENUPOPUP, &FrameWindow::OnInitMenuPopup},
      {WM_VKEYTOITEM, &FrameWindow::OnListKey},
      {WM_SYSCOMMAND, &FrameWindow::OnSystemCommand},
      {WM_CLOSE, &FrameWindow::OnClose},
      {WM_QUERYENDSESSION, &FrameWindow::OnQueryEndSession},
      {WM_ENDSESSION, &FrameWindow::OnEndSession},
      {WM_SIZE, &FrameWindow::OnSize},
      {WM_GETMINMAXINFO, &FrameWindow::OnMinimumSize},
      {WM_SETFOCUS, &FrameWindow::OnFocus},
      {WM_DPICHANGED, &FrameWindow::OnDpiChanged},
      {WM_SETTINGCHANGE, &FrameWindow::OnSettingChange},
      {platform::RestoreRequest(), &FrameWindow::OnRestoreRequest},
  };
  return table;
}

MessageResult FrameWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  return DispatchByTable(*this, Messages(), message, wParam, lParam);
}

// --- requests of the program

void FrameWindow::SetCaption(TextView caption) {
  SetWindowTextW(Handle(), ToWide(caption).c_str());
}

void FrameWindow::SetMenuVisible(MenuId item, bool visible) {
  oMenu.SetVisible(item, visible);
  DrawMenuBar(Handle());
}

void FrameWindow::ShowMessage(TextView text) { AskInMessageBox(text, MB_OK); }

int FrameWindow::AskInMessageBox(TextView text, UINT style) const {
  const std::wstring shown = ToWide(text.substr(0, kLongestMessage));
  return MessageBoxW(DialogOwner(), shown.c_str(), sTitle.c_str(), style | MB_SETFOREGROUND);
}

HWND FrameWindow::DialogOwner() const { return IsWindowVisible(Handle()) ? Handle() : nullptr; }

void FrameWindow::SetMark(TextView name) {
  SetPropW(Handle(), ToWide(name).c_str(), reinterpret_cast<HANDLE>(INT_PTR{1}));
}

void FrameWindow::RemoveMark(TextView name) { RemovePropW(Handle(), ToWide(name).c_str()); }

/// ShowWindow would not do: its first call in a program takes the starter's wish instead of ours.
void FrameWindow::Show() {
  if (IsWindowVisible(Handle())) return;
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  GetWindowPlacement(Handle(), &placement);
  placement.showCmd = CommandFor(iShownNext);
  SetWindowPlacement(Handle(), &placement);
}

void FrameWindow::Hide() {
  if (!IsWindowVisible(Handle())) return;
  iShownNext = State();
  ShowWindow(Handle(), SW_HIDE);
}

WindowState FrameWindow::State() const {
  if (!IsWindowVisible(Handle())) return iShownNext;
  if (IsIconic(Handle())) return WindowState::kMinimised;
  return IsZoomed(Handle()) ? WindowState::kMaximised : WindowState::kNormal;
}

void FrameWindow::SetState(WindowState state) {
  if (!IsWindowVisible(Handle())) {
    iShownNext = state;
  } else if (state != State()) {
    ShowWindow(Handle(), static_cast<int>(CommandFor(state)));
  }
}

void FrameWindow::BringToFront() { SetForegroundWindow(Handle()); }

IconHandle FrameWindow::Icon() const {
  return reinterpret_cast<IconHandle>(SmallProgramIcon(DpiOf(Handle())));
}

// --- layout

void FrameWindow::FitStatusList() {
  const int margin = Scaled(kMargin, DpiOf(Handle()));
  const RECT inner = InnerSize(Handle());
  const int width = std::max<int>(inner.right - 2 * margin, 0);
  const int noticeHeight = NoticeHeight(width);
  const int noticeTop = inner.bottom - margin - noticeHeight;
  const int listHeight = std::max(noticeTop - 2 * margin, 0);
  MoveWindow(oList.Handle(), margin, margin, width, listHeight, TRUE);
  MoveWindow(hNotice, margin, noticeTop, width, noticeHeight, TRUE);
}

int FrameWindow::NoticeHeight(int width) const {
  const HDC screen = GetDC(hNotice);
  const HGDIOBJ previous = SelectObject(screen, oFont.get());
  RECT area{0, 0, width, 0};
  DrawTextW(screen, sNotice.c_str(), static_cast<int>(sNotice.size()), &area,
            DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
  SelectObject(screen, previous);
  ReleaseDC(hNotice, screen);
  return area.bottom;
}

void FrameWindow::AdoptFont() {
  const int dpi = DpiOf(Handle());
  UniqueFont next = MakeMessageFont(dpi);
  oList.SetFont(next.get());
  SendMessageW(hNotice, WM_SETFONT, reinterpret_cast<WPARAM>(next.get()), TRUE);
  oFont = std::move(next);
  SetWindowIcons(Handle(), dpi);
}

MessageResult FrameWindow::OnSize(WPARAM, LPARAM) {
  if (Resize) Resize();
  return 0;
}

MessageResult FrameWindow::OnMinimumSize(WPARAM, LPARAM lParam) {
  const int dpi = DpiOf(Handle());
  auto* const limits = reinterpret_cast<MINMAXINFO*>(lParam);
  if (limits == nullptr) return std::nullopt;
  limits->ptMinTrackSize = {Scaled(kSmallestSize.cx, dpi), Scaled(kSmallestSize.cy, dpi)};
  return 0;
}

MessageResult FrameWindow::OnDpiChanged(WPARAM, LPARAM lParam) {
  const auto* const wanted = reinterpret_cast<const RECT*>(lParam);
  if (wanted == nullptr) return std::nullopt;
  AdoptFont();
  SetWindowPos(Handle(), nullptr, wanted->left, wanted->top, wanted->right - wanted->left,
               wanted->bottom - wanted->top, SWP_NOZORDER | SWP_NOACTIVATE);
  if (State() == WindowState::kNormal) FitStatusList();
  return 0;
}

MessageResult FrameWindow::OnSettingChange(WPARAM wParam, LPARAM) {
  if (wParam != SPI_SETNONCLIENTMETRICS) return std::nullopt;
  AdoptFont();
  if (State() == WindowState::kNormal) FitStatusList();
  return std::nullopt;
}

// --- actions of the user and of the system

MessageResult FrameWindow::OnCommand(WPARAM wParam, LPARAM lParam) {
  const bool fromMenu = lParam == 0;
  if (fromMenu) {
    RaiseMenuClick(WM_COMMAND, oMenu.ItemOfCommand(LOWORD(wParam)));
  } else if (reinterpret_cast<HWND>(lParam) == oList.Handle() && HIWORD(wParam) == LBN_DBLCLK) {
    RaiseStatusDoubleClick(WM_COMMAND);
  }
  return 0;
}

MessageResult FrameWindow::OnInitMenuPopup(WPARAM wParam, LPARAM) {
  RaiseMenuClick(WM_INITMENUPOPUP, oMenu.MenuOfPopup(reinterpret_cast<HMENU>(wParam)));
  return std::nullopt;
}

MessageResult FrameWindow::OnListKey(WPARAM wParam, LPARAM) {
  constexpr LRESULT done = -2, listDoesIt = -1;
  if (LOWORD(wParam) != VK_RETURN) return listDoesIt;
  RaiseStatusDoubleClick(WM_VKEYTOITEM);
  return done;
}

/// The close box, its menu item and Alt+F4 come here; WM_CLOSE by itself is another program's wish.
MessageResult FrameWindow::OnSystemCommand(WPARAM wParam, LPARAM) {
  constexpr WPARAM ofTheSystem = 0xFFF0;
  if ((wParam & ofTheSystem) != SC_CLOSE) return std::nullopt;
  RaiseClose(WM_SYSCOMMAND, CloseReason::kCloseBox);
  return 0;
}

MessageResult FrameWindow::OnClose(WPARAM, LPARAM) {
  RaiseClose(WM_CLOSE, CloseReason::kOther);
  return 0;
}

MessageResult FrameWindow::OnQueryEndSession(WPARAM, LPARAM) { return TRUE; }

/// Returns at once: a request in work goes on only after that. SessionEnd keeps the system waiting
/// instead.
MessageResult FrameWindow::OnEndSession(WPARAM wParam, LPARAM) {
  if (wParam != FALSE) RaiseClose(WM_ENDSESSION, CloseReason::kSystemEnds);
  return 0;
}

MessageResult FrameWindow::OnFocus(WPARAM, LPARAM) {
  SetFocus(oList.Handle());
  return 0;
}

MessageResult FrameWindow::OnRestoreRequest(WPARAM, LPARAM) {
  bool shown = false;
  if (RestoreRequest) {
    Raise(platform::RestoreRequest(), [&] { shown = RestoreRequest(); });
  }
  return shown ? kRestored : 0;
}

void FrameWindow::RaiseMenuClick(UINT message, std::optional<MenuId> item) {
  if (!item || !MenuClick) return;
  Raise(message, [&] { MenuClick(*item); });
}

void FrameWindow::RaiseStatusDoubleClick(UINT message) {
  const auto line = oList.SelectedLine();
  if (!line || !StatusDoubleClick) return;
  Raise(message, [&] { StatusDoubleClick(*line); });
}

void FrameWindow::RaiseClose(UINT message, CloseReason reason) {
  if (!CloseRequest) return;
  Raise(message, [&] { CloseRequest(reason); });
}

}  // namespace ostrel::platform
