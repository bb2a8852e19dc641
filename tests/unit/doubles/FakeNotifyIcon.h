// The shell's notification area as a test sees it; outlives the icon objects.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/NotifyIcon.h"

namespace ostrel::doubles {

struct FakeTray {
  struct Call {
    platform::NotifyIcon::Operation iOperation;
    platform::NotifyIconRecord oRecord;
  };
  std::vector<Call> Calls;
  bool bShellRuns = true;
  bool bIconThere = false;

  int iChosen = -1;  // what a popup menu answers
  /// Runs while a menu is open.
  std::function<void()> DuringMenu;
  std::vector<std::vector<platform::PopupItem>> Menus;  // as shown
  std::vector<int> Defaults;

  std::function<void(std::uint32_t code)> Notify;
  std::function<void()> ShellStarts;

  std::function<std::unique_ptr<platform::NotifyIcon>()> Factory();
};

class FakeNotifyIcon : public platform::NotifyIcon {
 public:
  explicit FakeNotifyIcon(FakeTray& tray) : oTray(tray) {
    oTray.Notify = [this](std::uint32_t code) { Notified(code); };
    oTray.ShellStarts = [this] {
      oTray.bShellRuns = true;
      oTray.bIconThere = false;
      ShellStarted();
    };
  }

  bool Notify(Operation operation, const platform::NotifyIconRecord& record) override {
    oTray.Calls.push_back({operation, record});
    if (!oTray.bShellRuns) return false;
    if (operation == Operation::kAdd) oTray.bIconThere = true;
    if (operation == Operation::kDelete) oTray.bIconThere = false;
    return true;
  }
  int PopUpMenu(const std::vector<platform::PopupItem>& items, int defaultIndex) override {
    oTray.Menus.push_back(items);
    oTray.Defaults.push_back(defaultIndex);
    if (oTray.DuringMenu) oTray.DuringMenu();
    return oTray.iChosen;
  }

 private:
  FakeTray& oTray;
};

inline std::function<std::unique_ptr<platform::NotifyIcon>()> FakeTray::Factory() {
  return [this] { return std::make_unique<FakeNotifyIcon>(*this); };
}

}  // namespace ostrel::doubles
