#include "shell/forms/Menus.h"

namespace ostrel {

const std::vector<platform::MenuDescription>& MainMenus() {
  static const std::vector<platform::MenuDescription> kMenus = {
      {mnuFile, 0, u"&File"},
      {mnuFileTest, mnuFile, u"&Test Quickbooks Connection"},
      {mnuFileCloseConnection, mnuFile, u"&Close Quickbooks Connection"},
      {mnuFileHide, mnuFile, u"&Hide"},
      {mnuFileExit, mnuFile, u"E&xit"},
      {mnuTools, 0, u"Tools"},
      {mnuToolsSettings, mnuTools, u"Settings"},
      {mnuToolsQBFile, mnuTools, u"Default Quickbooks Database"},
      {mnuToolsStartQB, mnuTools, u"Start Quickbooks"},
      {mnuToolsSep1, mnuTools, u"-"},
      {mnuToolsHist, mnuTools, u"Log History"},
      {mnuToolsCommLog, mnuTools, u"Log Communication"},
      {mnuToolsSep2, mnuTools, u"-"},
      {mnuToolsTest, mnuTools, u"Test Request"},
      {mnuCommunications, 0, u"&Communications"},
      {mnuCommunicationsFolder, mnuCommunications, u"Watch Folder"},
      {mnuCommunicationsSocket, mnuCommunications, u"Socket"},
      {mnuCommunicationsSep, mnuCommunications, u"-"},
      {mnuCommunicationsD3Linux, mnuCommunications, u"D3/Linux"},
      {mnuCommunicationsD3NT, mnuCommunications, u"D3/NT"},
      {mnuCommunicationsUniverse, mnuCommunications, u"Universe 10 or Geater"},
      {mnuCommunicationsOI, mnuCommunications, u"OpenInsight 7.1 and Greater"},
      {mnuHelp, 0, u"Help"},
      {mnuHelpAbout, mnuHelp, u"About"},
  };
  return kMenus;
}

}  // namespace ostrel
