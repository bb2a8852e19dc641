#include "shell/commands/LogFileView.h"

#include <algorithm>

#include "util/cFileIO.h"

namespace ostrel {
namespace {

// False when the file cannot be opened.
bool ReadBeginning(TextView path, Text& content) {
  cFileIO file;
  if (!file.OpenFile(path, u"R")) return false;
  file.ReadData(content, 0, std::min(file.FileSize(), LogFileView::kMostBytes));
  return true;
}

}  // namespace

LogFileView::LogFileView(const AppSettings& settings, frmError& viewer)
    : oSettings(settings), oViewer(viewer) {}

void LogFileView::lstStatus_DblClick(TextView line) {
  if (!Contains(line, u"Log ")) return;
  const TextView name = TrimBlanks(line.substr(line.find(u':') + 1));
  if (name.empty()) return;
  Text content;
  if (!ReadBeginning((oSettings.sHistPath + u"\\").append(name), content)) return;
  oViewer.Caption(u"Log File");
  oViewer.txtError(content);
  oViewer.Show();
}

}  // namespace ostrel
