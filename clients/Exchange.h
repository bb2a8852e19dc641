// One request to the gateway and its response, whichever way it goes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel {

struct Response {
  std::optional<int> errorNumber;  // set when the gateway responded with an error
  std::string body;                // in the code page, line breaks as they came
};

enum class ExchangeResult { kResponded, kNotReached, kTimeout };

class Exchange {
 public:
  virtual ~Exchange() = default;

  /// Called for each response and notice as it was received, byte for byte.
  std::function<void(std::string_view bytes)> Received;
  /// Called when the gateway says that QuickBooks is loading.
  std::function<void()> StillLoading;

  /// Sends these bytes and waits for the response, dispatching events meanwhile. To be called once.
  virtual ExchangeResult Run(std::string_view request) = 0;
  /// Finds out whether the gateway could be asked, without asking it: kResponded when it could. To
  /// be called instead of Run.
  virtual ExchangeResult Reach() = 0;

  /// The response (kResponded), or the reason why there is none, in words.
  Response response;
  Text reason;
  /// What to do about it (kNotReached, kTimeout), in one line; empty when nothing is known of it.
  TextView cure;
};

}  // namespace ostrel
