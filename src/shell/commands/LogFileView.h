// Opens the history file that a line of the status list names.
#pragma once

#include "shell/forms/frmError.h"
#include "shell/settings/AppSettings.h"
#include "util/Text.h"

namespace ostrel {

class LogFileView {
 public:
  /// A longer file is shown as far as this.
  static constexpr std::int64_t kMostBytes = std::int64_t{frmError::kMostCharacters} + 1;

  LogFileView(const AppSettings& settings, frmError& viewer);

  /// The line was double-clicked. The name of the file, in the folder of history files, is all that
  /// follows the line's first colon. A line without "Log ", and one that names no file that can be
  /// opened, does nothing.
  void lstStatus_DblClick(TextView line);

 private:
  const AppSettings& oSettings;
  frmError& oViewer;
};

}  // namespace ostrel
