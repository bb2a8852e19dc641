// Both looks of a form are one dialog, made from a template in memory: a report (a text box that
// grows with the window, buttons below) and the about box (an icon and a label, as large as the
// label needs). Places are computed in dialog units, which follow the font that the user has
// chosen, and computed anew whenever the window changes its size.
#include "platform/TextForm.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "platform/ApplicationWindow.h"
#include "platform/win32/DialogWindow.h"
#include "platform/win32/Dpi.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

using Look = TextFormDescription::Look;
using Kind = DialogControl::Kind;

constexpr WORD kTextControl = 100, kIconControl = 101, kFirstButton = 200;

// Lengths in dialog units.
constexpr short kFormMargin = 7, kGap = 4, kButtonWidth = 50, kButtonHeight = 14;
constexpr UnitRect kReportPlace{0, 0, 320, 190};
constexpr short kSmallestWidth = 160, kSmallestHeight = 90;
constexpr UnitRect kAboutPlace{0, 0, 220, 80};
constexpr short kLongestLabel = 200;

constexpr int kAboutIcon = 48;  // pixels at 96 dots per inch

// The time that a text box takes grows with the square of the length of a line.
constexpr std::size_t kLongestReportLine = 400;

constexpr DWORD kCommonStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_CENTER;

/// The text with breaks in lines that are too long.
std::wstring WithShortLines(TextView text) {
  std::wstring lines;
  lines.reserve(text.size() + text.size() / kLongestReportLine * kCrLf.size());
  std::size_t length = 0;
  for (const char16_t character : text) {
    if (length == kLongestReportLine) lines.append(L"\r\n");
    length = character == u'\n' || length == kLongestReportLine ? 0 : length + 1;
    lines.push_back(static_cast<wchar_t>(character));
  }
  return lines;
}

/// Buttons stand below what the form shows, at its right side, in the order given.
class TextDialog : public TextForm, private DialogWindow {
 public:
  explicit TextDialog(TextFormDescription description) : oDescription(std::move(description)) {}

  void SetCaption(TextView caption) override;
  void SetText(TextView text) override;
  void Show() override;
  void Close() override { DialogWindow::Close(); }
  bool IsOpen() const override { return Handle() != nullptr; }

 private:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool OnInitDialog();
  bool OnCommand(int id);
  bool OnClose();
  bool OnMinimumSize(LPARAM lParam) const;

  bool IsReport() const { return oDescription.look == Look::kReport; }
  DialogTemplate Template() const;
  void AddContents(DialogTemplate& dialog) const;
  WORD ControlOf(std::size_t button) const;
  void ShowText();
  void Arrange() const;
  void ArrangeButtons(SIZE inner) const;
  void FitAbout() const;
  SIZE LabelSize() const;

  TextFormDescription oDescription;
  std::wstring sText;
};

/// The system presses the button of this number at Escape.
WORD TextDialog::ControlOf(std::size_t button) const {
  if (oDescription.buttons[button].id == oDescription.closeButton) return IDCANCEL;
  return static_cast<WORD>(kFirstButton + button);
}

DialogTemplate TextDialog::Template() const {
  const DWORD border = IsReport() ? WS_THICKFRAME | WS_MAXIMIZEBOX : DS_MODALFRAME;
  DialogTemplate dialog(kCommonStyle | border, IsReport() ? kReportPlace : kAboutPlace,
                        ToWide(oDescription.caption));
  AddContents(dialog);
  for (std::size_t i = 0; i < oDescription.buttons.size(); ++i) {
    const WORD id = ControlOf(i);
    const DWORD look = id == IDCANCEL ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    const std::wstring caption = ToWide(oDescription.buttons[i].caption);
    dialog.Add({Kind::kButton, id, WS_TABSTOP | look, 0, caption, {}});
  }
  return dialog;
}

void TextDialog::AddContents(DialogTemplate& dialog) const {
  constexpr DWORD report = WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL;
  if (IsReport()) {
    dialog.Add({Kind::kEdit, kTextControl, report, WS_EX_CLIENTEDGE, {}, {}});
  } else {
    dialog.Add({Kind::kStatic, kIconControl, SS_ICON | SS_REALSIZEIMAGE, 0, {}, {}});
    dialog.Add({Kind::kStatic, kTextControl, SS_NOPREFIX, 0, {}, {}});
  }
}

void TextDialog::SetCaption(TextView caption) {
  oDescription.caption = caption;
  if (IsOpen()) SetWindowTextW(Handle(), ToWide(caption).c_str());
}

void TextDialog::SetText(TextView shown) {
  sText = WithShortLines(shown);
  if (IsOpen()) ShowText();
}

void TextDialog::Show() {
  if (!IsOpen() && !Open(Template())) return;
  ShowWindow(Handle(), IsIconic(Handle()) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(Handle());
}

void TextDialog::ShowText() {
  SetWindowTextW(Control(kTextControl), sText.c_str());
  if (!IsReport()) FitAbout();
}

bool TextDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return OnInitDialog();
    case WM_COMMAND:
      return OnCommand(LOWORD(wParam));
    case WM_SIZE:
      Arrange();
      return true;
    case WM_GETMINMAXINFO:
      return OnMinimumSize(lParam);
    case WM_CLOSE:
      return OnClose();
    default:
      return false;
  }
}

/// The focus goes to the button that closes; the system would choose the text and select all of it.
bool TextDialog::OnInitDialog() {
  if (IsReport()) {
    SendMessageW(Control(kTextControl), EM_SETLIMITTEXT, 0, 0);
  } else {
    const HICON icon = ProgramIcon(Scaled(kAboutIcon, DpiOf(Handle())));
    SendMessageW(Control(kIconControl), STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  }
  ShowText();
  Arrange();
  SetFocus(Control(IDCANCEL));
  return false;
}

bool TextDialog::OnCommand(int id) {
  for (std::size_t i = 0; i < oDescription.buttons.size(); ++i) {
    if (ControlOf(i) != id) continue;
    const ButtonId button = oDescription.buttons[i].id;
    Raise(WM_COMMAND, [&] {
      if (ButtonClick) ButtonClick(button);
    });
    return true;
  }
  return false;
}

/// Comes from the close box, and from Escape in the text.
bool TextDialog::OnClose() {
  OnCommand(IDCANCEL);
  Close();
  return true;
}

bool TextDialog::OnMinimumSize(LPARAM lParam) const {
  if (!IsReport() || lParam == 0 || Handle() == nullptr) return false;
  const SIZE size = FromUnits(kSmallestWidth, kSmallestHeight);
  reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {size.cx, size.cy};
  return true;
}

void TextDialog::Arrange() const {
  RECT inner{};
  GetClientRect(Handle(), &inner);
  const SIZE margin = FromUnits(kFormMargin, kFormMargin);
  const int buttonsTop = inner.bottom - FromUnits(0, kButtonHeight).cy - margin.cy;
  if (IsReport()) {
    const int height = std::max<int>(buttonsTop - 2 * margin.cy, 0);
    Place(kTextControl, margin.cx, margin.cy, inner.right - 2 * margin.cx, height);
  } else {
    const int icon = Scaled(kAboutIcon, DpiOf(Handle()));
    const SIZE label = LabelSize();
    Place(kIconControl, margin.cx, margin.cy, icon, icon);
    Place(kTextControl, 2 * margin.cx + icon, margin.cy, label.cx, label.cy);
  }
  ArrangeButtons({inner.right, inner.bottom});
  InvalidateRect(Handle(), nullptr, TRUE);
}

void TextDialog::ArrangeButtons(SIZE inner) const {
  const SIZE margin = FromUnits(kFormMargin, kFormMargin);
  const SIZE button = FromUnits(kButtonWidth, kButtonHeight);
  const int step = button.cx + FromUnits(kGap, 0).cx;
  int left = inner.cx - margin.cx - button.cx;
  for (std::size_t i = oDescription.buttons.size(); i-- > 0; left -= step) {
    Place(ControlOf(i), left, inner.cy - margin.cy - button.cy, button.cx, button.cy);
  }
}

SIZE TextDialog::LabelSize() const {
  const HWND label = Control(kTextControl);
  const HDC screen = GetDC(label);
  const auto font = reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0));
  const HGDIOBJ previous = SelectObject(screen, font);
  RECT area{0, 0, FromUnits(kLongestLabel, 0).cx, 0};
  DrawTextW(screen, sText.c_str(), static_cast<int>(sText.size()), &area,
            DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  SelectObject(screen, previous);
  ReleaseDC(label, screen);
  return {area.right, area.bottom};
}

/// Makes the about box as large as its label needs.
void TextDialog::FitAbout() const {
  const SIZE label = LabelSize();
  const SIZE margin = FromUnits(kFormMargin, kFormMargin);
  const int icon = Scaled(kAboutIcon, DpiOf(Handle()));
  const int width =
      std::max<int>(3 * margin.cx + icon + label.cx, FromUnits(kAboutPlace.width, 0).cx);
  const int height = 3 * margin.cy + std::max<int>(icon, label.cy) + FromUnits(0, kButtonHeight).cy;

  RECT outer{}, inner{};
  GetWindowRect(Handle(), &outer);
  GetClientRect(Handle(), &inner);
  SetWindowPos(Handle(), nullptr, 0, 0, width + (outer.right - outer.left) - inner.right,
               height + (outer.bottom - outer.top) - inner.bottom,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

std::unique_ptr<TextForm> MakeTextForm(const TextFormDescription& description) {
  return std::make_unique<TextDialog>(description);
}

}  // namespace ostrel::platform
