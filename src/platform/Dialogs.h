// The questions that the program asks its user. Every question blocks its caller until it is
// answered and dispatches events meanwhile; when the program ends, the answer is Cancel. A message
// with an OK button is MainWindow's.
#pragma once

#include <optional>
#include <vector>

#include "util/Text.h"

namespace ostrel::platform {

enum class Answer { kYes, kNo, kCancel };

struct FileQuestion {
  Text sFilter;    // descriptions and patterns in turn, separated by "|"; see FilterEntries
  Text sFileName;  // what is offered; empty: nothing
  Text sFolder;    // where the choice begins when nothing is offered
};

struct FilterEntry {
  Text sDescription;
  Text sPattern;
};

/// The entries that a dialog offers. A piece without a partner at the end belongs to the pattern
/// before it; such a pattern matches no file, so the plain one stands in front of it, behind ";".
inline std::vector<FilterEntry> FilterEntries(TextView filter) {
  std::vector<Text> pieces;
  for (std::size_t end = 0; end != TextView::npos;) {
    end = filter.find(u'|');
    pieces.emplace_back(filter.substr(0, end));
    if (end != TextView::npos) filter.remove_prefix(end + 1);
  }
  std::vector<FilterEntry> entries;
  for (std::size_t i = 0; i + 1 < pieces.size(); i += 2) {
    entries.push_back({pieces[i], pieces[i + 1]});
  }
  if (pieces.size() % 2 != 0 && !entries.empty()) {
    Text& pattern = entries.back().sPattern;
    pattern += u";" + pattern + u"|" + pieces.back();
  }
  return entries;
}

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
