// Failures that a company file asks for at some calls only, to try a client out:
//   <Fault operation="processRequest" error="0x80040408" every="3"/>
//   <Fault message="CustomerAddRq" statusCode="3175" statusMessage="..." once="1"/>
// They stand within its Behaviour element.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/faults/Conduct.h"
#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

struct Fault {
  /// The operation ("beginSession") or the message ("CustomerAddRq") that it strikes.
  std::string target;
  /// seconds="2.5", error="0x80040408", dies="1": what an operation does; a message only fails.
  Conduct conduct;
  /// statusCode, statusSeverity ("Error" without it) and statusMessage: the answer to a message,
  /// which is not carried out.
  std::optional<Status> status;
  /// answerSize: characters that the response to the message's request comes to, if it is shorter.
  std::size_t answerSize = 0;
  /// Strikes at every such call: every="3" at the third, the sixth...
  unsigned every = 1;
  /// once="1": only at the first of these.
  bool once = false;
};

/// Nothing when it cannot be read, or asks for what its target does not do.
std::optional<Fault> ReadFault(const Element& element);

/// How often the targets of a file's faults have been called.
class FaultCounts {
 public:
  /// Counts a call of the target, and returns the first fault that strikes now, or null.
  const Fault* Count(std::span<const Fault> faults, std::string_view target);

 private:
  std::vector<unsigned> oCalls;
};

}  // namespace ostrel::simulator
