#include "shell/forms/TrayMenu.h"

#include <utility>

#include "shell/forms/Version.h"

namespace ostrel {

TrayMenu::TrayMenu(NotifyIconFactory createIcon, Trace& trace)
    : CreateIcon(std::move(createIcon)), oTrace(trace) {}

void TrayMenu::Show(platform::IconHandle icon) {
  if (bRemoved) return;
  if (!oSysTray) Create();
  oSysTray->IconHandle(icon);
  oSysTray->ShowIcon();
}

void TrayMenu::Remove() {
  bRemoved = true;
  // The object stays: its menu may be open, and its code on the stack.
  if (oSysTray) oSysTray->HideIcon();
}

void TrayMenu::Create() {
  oSysTray.emplace(CreateIcon(), oTrace);
  oSysTray->AddMenuItem(u"&Open", kOpen, true, true);
  oSysTray->AddMenuItem(u"-", u"", false, true);
  oSysTray->AddMenuItem(u"&Close", kClose, false, true);
  oSysTray->ToolTip(kProgramTitle);
  oSysTray->MenuClick = [this](int, TextView key) {
    if (!bRemoved && MenuClick) MenuClick(key);
  };
  oSysTray->SysTrayDoubleClick = [this](std::int16_t button) {
    if (!bRemoved && SysTrayDoubleClick) SysTrayDoubleClick(button);
  };
  oSysTray->SysTrayMouseDown = [this](std::int16_t button) {
    if (!bRemoved && SysTrayMouseDown) SysTrayMouseDown(button);
  };
}

void TrayMenu::ShowMenu() {
  if (oSysTray && !bRemoved) oSysTray->ShowMenu();
}

}  // namespace ostrel
