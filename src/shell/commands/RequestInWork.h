// How commands of the menu get at the QuickBooks session: one at a time with the requests.
#pragma once

#include <optional>

#include "gateway/RequestGate.h"
#include "gateway/Trace.h"

namespace ostrel {

/// The status line of a command that is refused.
inline constexpr TextView kRequestInWork = u"A request is in work: try again when it has ended";

/// Nothing while a request is in work, which the status list then tells.
inline std::optional<RequestGate::Pass> EnterOrTell(RequestGate& gate, Trace& trace) {
  auto pass = gate.TryEnter();
  if (!pass) trace.AddStatus(kRequestInWork);
  return pass;
}

}  // namespace ostrel
