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

  /// command: a program with its arguments, as on a command line: names with blanks in quotation
  /// marks. windowStyle: 1 normal with focus, 0 hidden. 0 when it cannot be started.
  virtual ProcessId StartProgram(TextView command, std::int16_t windowStyle) = 0;
  /// verb: what to do with the document, as the shell names it ("open", "print"); empty for its
  /// usual one. showCommand: the shell's (0 hidden, 5 shown). Returns as soon as the
  /// document's program was told, and there is no process to ask for later. False when the shell
  /// cannot open it.
  virtual bool OpenDocument(TextView file, TextView verb, std::int32_t showCommand) = 0;
  /// True as well for a process that cannot be looked at. Until this has said true, the number of a
  /// process that StartProgram has started is given to no other.
  virtual bool HasEnded(ProcessId process) = 0;
};

}  // namespace ostrel::platform
