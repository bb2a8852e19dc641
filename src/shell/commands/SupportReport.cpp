#include "shell/commands/SupportReport.h"

#include "shell/forms/Version.h"

namespace ostrel {
namespace {

void AddLine(Text& report, TextView label, TextView value = {}) {
  report.append(label).append(value).append(kCrLf);
}

Text Number(std::int32_t number) { return ToText(std::int64_t{number}); }

}  // namespace

Text SupportRequest() {
  return u"Please Contact Pellmor Systems to help resolve this issue.  They may want you to email "
         u"(" +
         Text(kSupportAddress) + u") the information listed below:";
}

Text SupportReport(const AppSettings& settings, const HostQuery& hostQuery) {
  Text report;
  AddLine(report, u"Ostrel Server:");
  AddLine(report, Text(41, u'='));
  AddLine(report, u"Version: ", ProgramVersion());
  AddLine(report, u"Settings File: ", settings.sIniFile);
  AddLine(report, u"Communication Type: ", Number(settings.lCommType));
  AddLine(report, u"Socket: ",
          BooleanWord(settings.bSocketServer) + u", port " + Number(settings.lSocketPort));
  AddLine(report, u"Folder: ", BooleanWord(settings.bFolderWatch) + u", " + settings.sProcessPath);
  AddLine(report, u"QB Database: ", settings.sQBFileName);
  if (!hostQuery.sQBProductName.empty()) {
    AddLine(report, u"Quickbooks: ", ProductAndVersion(hostQuery));
  }
  return report;
}

Text ProductAndVersion(const HostQuery& hostQuery) {
  return hostQuery.sQBProductName + u" " + Number(hostQuery.iQBMajorVersion) + u"." +
         Number(hostQuery.iQBMinorVersion);
}

}  // namespace ostrel
