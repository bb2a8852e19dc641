// Delays and failures that a company file asks for, to try a client out. A Conduct is what a call
// is asked to do; a Fault asks for one at some calls only:
//   <Fault operation="processRequest" error="0x80040408" every="3"/>
//   <Fault message="CustomerAddRq" statusCode="3175" statusMessage="..." once="1"/>
// Faults stand within the Behaviour element of the file (Behaviour.h).
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/values/Status.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

struct Conduct {
  std::chrono::milliseconds delay{0};
  std::uint32_t error = 0;  // HRESULT; 0: the operation does its work
  bool dies = false;        // QuickBooks ends in the middle of it, after the delay
};

/// Read "2.5" (seconds, at most 3600), "0x80040408" and "1". An empty text asks for nothing.
/// False for a text of another form.
constexpr std::string_view kSecondsForm = "a number of seconds from 0 to 3600";
constexpr std::string_view kErrorForm = "the HRESULT of a failure such as 0x80040408";
constexpr std::string_view kFlagForm = "0 or 1";
bool ReadSeconds(std::string_view text, std::chrono::milliseconds& delay);
bool ReadError(std::string_view text, std::uint32_t& hresult);
bool ReadFlag(std::string_view text, bool& flag);

/// every="0" is not a number from 1 to 1000000
std::string WrongValue(std::string_view attribute, std::string_view value, std::string_view form);

struct Fault {
  /// The operation ("beginSession") or the message ("CustomerAddRq") that it strikes.
  std::string target;
  /// seconds="2.5", error="0x80040408", dies="1" for an operation; only an error for a message.
  Conduct conduct;
  /// statusCode, statusSeverity ("Error" without it) and statusMessage: the response to a message,
  /// which is not carried out.
  std::optional<Status> status;
  /// answerSize (the attribute's name in company files): the characters to which a shorter response
  /// to the message's request is padded.
  std::size_t responseSize = 0;
  /// Strikes at every such call: every="3" at the third, the sixth...
  unsigned every = 1;
  /// once="1": only at the first of these.
  bool once = false;
};

/// Nothing when the element cannot be read, or asks an operation or a message for something that it
/// cannot do; `why` then says so in words.
std::optional<Fault> ReadFault(const Element& element, std::string& why);

/// The number of calls that each fault of a file has seen.
class FaultCounts {
 public:
  /// Counts a call of the target, and returns the first fault that strikes now, or null.
  const Fault* Count(std::span<const Fault> faults, std::string_view target);

 private:
  std::vector<unsigned> oCalls;
};

}  // namespace ostrel::simulator
