// Other programs: start one, open a document with the program that belongs to it, see whether one
// still runs.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel::platform {

using ProcessId = std::uint32_t;  // 0: none

class Processes {
 public:
  virtual ~Processes() = default;

  /// command: a program with its arguments, as on a command line. windowStyle: 1 normal with focus,
  /// 0 hidden. 0 when it cannot be started.
  virtual ProcessId StartProgram(TextView command, std::int16_t windowStyle) = 0;
  /// verb: empty for the document's usual one. showCommand: the shell's (0 hidden, 5 shown). False
  /// when the shell cannot open it.
  virtual bool OpenDocument(TextView file, TextView verb, std::int32_t showCommand) = 0;
  /// True as well for a process that cannot be looked at.
  virtual bool HasEnded(ProcessId process) = 0;
};

}  // namespace ostrel::platform
