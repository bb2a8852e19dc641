// One request to the gateway and its answer, over one connection.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/EventLoop.h"
#include "sockets/CSocket.h"
#include "util/Text.h"

namespace ostrel {

/// One answer frame as the gateway sends it, without the end-of-data mark.
struct Answer {
  explicit Answer(std::string_view frame);

  std::optional<int> errorNumber;  // set when the gateway answered "ERROR: number"
  std::string header;              // the length, or "ERROR: number"
  std::string body;                // behind the first attribute mark
};

/// 99: QuickBooks is still opening the company file; the answer follows on the same connection.
inline constexpr int kLoadingNotice = 99;

enum class ExchangeResult { kAnswered, kNoConnection, kTimeout };

class GatewayExchange {
 public:
  GatewayExchange(TextView host, int port, std::chrono::milliseconds timeout);

  /// Called for each frame as it was received, end-of-data mark included.
  std::function<void(std::string_view frame)> FrameReceived;
  /// Called when the gateway says that QuickBooks is loading.
  std::function<void()> StillLoading;

  /// Connects, sends these bytes and waits for the answer, dispatching events meanwhile.
  ExchangeResult Run(std::string_view request);

  /// What the answer was (kAnswered) or why there is none, in words.
  std::string frame;
  Text reason;

 private:
  void OnDataArrival();
  void OnFrame(std::string_view received);
  void End(ExchangeResult result, Text why);

  std::shared_ptr<CSocket> oSocket;
  platform::Timer tmrTimeout;
  std::string sReceived;
  std::size_t searched = 0;  // bytes of sReceived that hold no end-of-data mark
  std::optional<ExchangeResult> oResult;
};

}  // namespace ostrel
