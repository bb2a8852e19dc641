// The main window's menu items. A window shows them under these numbers and hands them back when
// they are chosen.
#pragma once

#include <vector>

#include "platform/ApplicationWindow.h"
#include "platform/MainWindow.h"

namespace ostrel {

enum MenuItem : platform::MenuId {
  mnuFile = 1,
  mnuFileTest,
  mnuFileCloseConnection,
  mnuFileHide,
  mnuFileExit,
  mnuTools,
  mnuToolsSettings,
  mnuToolsQBFile,
  mnuToolsStartQB,
  mnuToolsSep1,
  mnuToolsHist,
  mnuToolsCommLog,
  mnuToolsSep2,
  mnuToolsTest,
  mnuCommunications,
  mnuCommunicationsFolder,
  mnuCommunicationsSocket,
  mnuCommunicationsSep,
  mnuCommunicationsD3Linux,
  mnuCommunicationsD3NT,
  mnuCommunicationsUniverse,
  mnuCommunicationsOI,
  mnuHelp,
  mnuHelpAbout,
  mnuLast = mnuHelpAbout,
};

/// The menu bar with its captions, each menu before its items.
const std::vector<platform::MenuDescription>& MainMenus();

}  // namespace ostrel
