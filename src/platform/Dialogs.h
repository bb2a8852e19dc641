// What the program asks of its user. Every question blocks its caller until it is answered and
// dispatches events meanwhile; when the program ends, the answer is Cancel. A message with an OK
// button is MainWindow's.
#pragma once

#include <optional>

#include "util/Text.h"

namespace ostrel::platform {

enum class Answer { kYes, kNo, kCancel };

struct FileQuestion {
  Text sFilter;    // descriptions and patterns in turn, separated by "|"
  Text sFileName;  // what is offered; empty: nothing
  Text sFolder;    // where the choice begins when nothing is offered
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;

  virtual Answer AskYesNoCancel(TextView question) = 0;
  /// Nothing when cancelled.
  virtual std::optional<Text> AskText(TextView prompt, TextView offered) = 0;
  /// An existing file's full path; nothing when cancelled or when the dialog could not be shown.
  virtual std::optional<Text> AskForFile(const FileQuestion& question) = 0;
  /// False when another program holds the clipboard for longer than a moment.
  virtual bool CopyToClipboard(TextView text) = 0;
};

}  // namespace ostrel::platform
