// The traces the program leaves. The shell's logs write them; gateway and transports report here.
// A file that cannot be opened never fails a request: its text is left out.
#pragma once

#include "util/Text.h"

namespace ostrel {

class Trace {
 public:
  virtual ~Trace() = default;

  /// One line on the status list, and its copy in the communication log.
  virtual void AddStatus(TextView text) = 0;

  /// Whether WriteCommLog would write: callers do not compose long lines in vain.
  virtual bool CommLogEnabled() const = 0;
  /// One dated line in the communication log when that is switched on. Never raises.
  virtual void WriteCommLog(TextView text) = 0;

  /// The opening lines of every history file (version, communication settings, a rule), each ended
  /// by an attribute mark.
  virtual Text HistoryHeader() const = 0;
  /// Writes a history file of its own: the header, then `text`, attribute marks as line breaks.
  virtual void WriteHistoryFile(TextView text) = 0;
  /// Rewrites the status file: the time, and this text.
  virtual void WriteStatusFile(TextView text) = 0;
};

}  // namespace ostrel
