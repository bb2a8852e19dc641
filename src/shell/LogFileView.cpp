#include "shell/LogFileView.h"

#include <algorithm>

#include "util/cFileIO.h"

namespace ostrel {

LogFileView::LogFileView(const AppSettings& settings, frmError& viewer)
    : oSettings(settings), oViewer(viewer) {}

void LogFileView::lstStatus_DblClick(TextView line) {
  if (!Contains(line, u"Log ")) return;
  const TextView name = TrimBlanks(line.substr(line.find(u':') + 1));
  if (name.empty()) return;
  cFileIO file;
  file.FullFileName((oSettings.sHistPath + u"\\").append(name));
  if (!file.OpenFile({}, u"R")) return;
  Text content;
  file.ReadData(content, 0, std::min(file.FileSize(), kMostBytes));
  file.CloseFile();
  oViewer.Caption(u"Log File");
  oViewer.txtError(content);
  oViewer.Show();
}

}  // namespace ostrel
