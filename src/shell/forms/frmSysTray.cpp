// The shell tells of the mouse over the icon by numbers of window messages; a table turns them into
// events. The shell forgets all icons when it is started again and may refuse one while it is busy,
// so the icon that is wanted (bShown) and the icon that is there (bAdded) are kept apart, and each
// start of the shell adds the wanted one.
#include "shell/forms/frmSysTray.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "gateway/Guarded.h"

namespace ostrel {
namespace {

using platform::NotifyIcon;
using platform::NotifyIconRecord;

constexpr std::uint32_t kWholeRecord =
    NotifyIconRecord::kMessage | NotifyIconRecord::kIcon | NotifyIconRecord::kTip;

template <typename Event, typename... Arguments>
void Notify(const Event& event, const Arguments&... arguments) {
  if (event) event(arguments...);
}

}  // namespace

struct frmSysTray::Notification {
  std::uint32_t iCode;
  void (*Act)(frmSysTray& tray);
};

// Kept: the left button's "down" comes when it is released, and its press tells nothing.
const frmSysTray::Notification frmSysTray::kNotifications[] = {
    {512, [](frmSysTray& tray) { Notify(tray.SysTrayMouseMove); }},
    {514, [](frmSysTray& tray) { Notify(tray.SysTrayMouseDown, kLeftButton); }},
    {515, [](frmSysTray& tray) { Notify(tray.SysTrayDoubleClick, kLeftButton); }},
    {516, [](frmSysTray& tray) { tray.RightButtonDown(); }},
    {517, [](frmSysTray& tray) { Notify(tray.SysTrayMouseUp, kRightButton); }},
    {518, [](frmSysTray& tray) { Notify(tray.SysTrayDoubleClick, kRightButton); }},
};

frmSysTray::frmSysTray(std::unique_ptr<NotifyIcon> icon, Trace& trace)
    : oTrace(trace), oIcon(std::move(icon)) {
  oIcon->Notified = [this](std::uint32_t code) {
    Guarded(oTrace, u"frmSysTray", [&] { Decode(code); });
  };
  oIcon->ShellStarted = [this] { Guarded(oTrace, u"frmSysTray", [this] { ShellStarted(); }); };
}

frmSysTray::~frmSysTray() {
  Guarded(oTrace, u"frmSysTray", [this] { HideIcon(); });
}

void frmSysTray::ToolTip(TextView sTip) {
  const TextView tip = sTip.substr(0, kTipField - 1);
  if (oRecord.tip == tip) return;
  oRecord.tip = tip;
  Update(NotifyIconRecord::kTip);
}

void frmSysTray::IconHandle(platform::IconHandle hIcon) {
  if (oRecord.icon == hIcon) return;
  oRecord.icon = hIcon;
  Update(NotifyIconRecord::kIcon);
}

void frmSysTray::AddMenuItem(TextView sCaption, TextView sKey, bool bDefault, bool bEnabled) {
  mnuSysTray.push_back({{Text(sCaption), bEnabled}, Text(sKey)});
  if (bDefault) iDefaultMenuIndex = static_cast<int>(mnuSysTray.size()) - 1;
}

void frmSysTray::EnableMenu(int iIndex, bool bState) {
  if (IsItem(iIndex)) mnuSysTray[static_cast<std::size_t>(iIndex)].oItem.enabled = bState;
}

void frmSysTray::RemoveMenuItem(int iIndex) {
  if (!IsItem(iIndex)) return;
  mnuSysTray.erase(mnuSysTray.begin() + iIndex);
  if (iIndex == iDefaultMenuIndex) {
    iDefaultMenuIndex = -1;
  } else if (iIndex < iDefaultMenuIndex) {
    --iDefaultMenuIndex;
  }
}

void frmSysTray::DefaultMenuIndex(int iIndex) {
  if (IsItem(iIndex)) iDefaultMenuIndex = iIndex;
}

void frmSysTray::ShowMenu() {
  if (bMenuOpen || mnuSysTray.empty()) return;
  const std::vector<MenuEntry> shown = mnuSysTray;  // what is clicked is what was shown
  std::vector<platform::PopupItem> items;
  items.reserve(shown.size());
  for (const MenuEntry& entry : shown) items.push_back(entry.oItem);
  int chosen = -1;
  {
    const Flag open(bMenuOpen);
    chosen = oIcon->PopUpMenu(items, iDefaultMenuIndex);
  }
  if (chosen < 0 || chosen >= static_cast<int>(shown.size())) return;
  Notify(MenuClick, chosen, TextView(shown[static_cast<std::size_t>(chosen)].sKey));
}

void frmSysTray::ShowIcon() {
  bShown = true;
  AddOrModify();
}

void frmSysTray::HideIcon() {
  if (bShown && bAdded) oIcon->Notify(NotifyIcon::Operation::kDelete, oRecord);
  bShown = false;
  bAdded = false;
}

void frmSysTray::Decode(std::uint32_t code) {
  const auto found = std::find_if(std::begin(kNotifications), std::end(kNotifications),
                                  [&](const Notification& one) { return one.iCode == code; });
  if (found != std::end(kNotifications)) found->Act(*this);
}

void frmSysTray::RightButtonDown() {
  if (ShowMenuOnRightClick) {
    ShowMenu();
  } else {
    Notify(SysTrayMouseDown, kRightButton);
  }
}

void frmSysTray::AddOrModify() {
  // All of it: what changed while the icon was hidden, the shell has not heard of.
  oRecord.flags = kWholeRecord;
  if (bAdded) {
    oIcon->Notify(NotifyIcon::Operation::kModify, oRecord);
  } else {
    bAdded = oIcon->Notify(NotifyIcon::Operation::kAdd, oRecord);
  }
}

void frmSysTray::Update(std::uint32_t flags) {
  oRecord.flags = flags;
  if (bShown && bAdded) oIcon->Notify(NotifyIcon::Operation::kModify, oRecord);
}

void frmSysTray::ShellStarted() {
  bAdded = false;
  if (bShown) AddOrModify();
}

bool frmSysTray::IsItem(int index) const {
  return index >= 0 && index < static_cast<int>(mnuSysTray.size());
}

}  // namespace ostrel
