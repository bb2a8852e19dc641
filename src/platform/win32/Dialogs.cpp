#include "platform/Dialogs.h"

#include <windows.h>
#include <cderr.h>
#include <commdlg.h>

#include <array>
#include <chrono>
#include <cstring>
#include <memory>
#include <string>

#include "platform/ApplicationWindow.h"
#include "platform/EventLoop.h"
#include "platform/win32/FrameWindow.h"
#include "platform/win32/InputBox.h"
#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

constexpr std::size_t kLongestPath = 32768;

/// The clipboard while this program holds it.
class HeldClipboard {
 public:
  explicit HeldClipboard(HWND owner) : bOpened(OpenClipboard(owner) != FALSE) {}
  ~HeldClipboard() {
    if (bOpened) CloseClipboard();
  }
  HeldClipboard(const HeldClipboard&) = delete;
  HeldClipboard& operator=(const HeldClipboard&) = delete;

  bool IsHeld() const { return bOpened; }
  bool Set(std::wstring_view text);

 private:
  bool bOpened;
};

/// The memory is the system's from the moment that it took it.
bool HeldClipboard::Set(std::wstring_view text) {
  const std::size_t bytes = text.size() * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes + sizeof(wchar_t));
  if (memory == nullptr) return false;
  std::memcpy(GlobalLock(memory), text.data(), bytes);
  GlobalUnlock(memory);
  if (EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, memory) != nullptr) return true;
  GlobalFree(memory);
  return false;
}

/// The filter as the file dialog wants it: each description and pattern ended by a zero, and one at
/// the end.
std::wstring FilterOf(TextView filter) {
  std::wstring text;
  for (const FilterEntry& entry : FilterEntries(filter)) {
    text.append(ToWide(entry.sDescription)).push_back(L'\0');
    text.append(ToWide(entry.sPattern)).push_back(L'\0');
  }
  text.push_back(L'\0');
  return text;
}

class SystemDialogs : public Dialogs {
 public:
  explicit SystemDialogs(const FrameWindow& owner) : oOwner(owner) {}

  Answer AskYesNoCancel(TextView question) override;
  std::optional<Text> AskText(TextView prompt, TextView offered) override;
  std::optional<Text> AskForFile(const FileQuestion& question) override;
  bool CopyToClipboard(TextView text) override;

 private:
  const FrameWindow& oOwner;
};

Answer SystemDialogs::AskYesNoCancel(TextView question) {
  switch (oOwner.AskInMessageBox(question, MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
      return Answer::kYes;
    case IDNO:
      return Answer::kNo;
    default:
      return Answer::kCancel;
  }
}

std::optional<Text> SystemDialogs::AskText(TextView prompt, TextView offered) {
  InputBox box(oOwner.Title(), ToWide(prompt), ToWide(offered));
  const auto answer = box.Ask(oOwner.DialogOwner());
  if (!answer) return std::nullopt;
  return FromWide(*answer);
}

std::optional<Text> SystemDialogs::AskForFile(const FileQuestion& question) {
  const std::wstring filter = FilterOf(question.sFilter);
  const std::wstring folder = ToWide(question.sFolder);
  std::wstring path = ToWide(question.sFileName).substr(0, kLongestPath - 1);
  path.resize(kLongestPath, L'\0');

  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = oOwner.DialogOwner();
  dialog.lpstrFilter = filter.c_str();
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  dialog.Flags =
      OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_ENABLESIZING;
  BOOL chosen = GetOpenFileNameW(&dialog);
  if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
    path.front() = L'\0';  // what was offered cannot be a file's name
    chosen = GetOpenFileNameW(&dialog);
  }
  if (!chosen) return std::nullopt;
  return FromWide(path.c_str());
}

bool SystemDialogs::CopyToClipboard(TextView text) {
  constexpr int attempts = 25;
  constexpr std::chrono::milliseconds pause(20);
  for (int attempt = 0; attempt < attempts; ++attempt) {
    if (attempt > 0) DoEventsFor(pause);
    HeldClipboard clipboard(oOwner.Handle());
    if (clipboard.IsHeld()) return clipboard.Set(ToWide(text));
  }
  return false;
}

}  // namespace

std::unique_ptr<Dialogs> MakeDialogs(ApplicationWindow& owner) {
  return std::make_unique<SystemDialogs>(static_cast<const FrameWindow&>(owner));
}

}  // namespace ostrel::platform
