// One request to the gateway and its response, over one connection.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "clients/Exchange.h"
#include "platform/EventLoop.h"
#include "sockets/CSocket.h"
#include "util/Text.h"

namespace ostrel {

class GatewayExchange : public Exchange {
 public:
  GatewayExchange(TextView host, int port, std::chrono::milliseconds timeout);

  /// The request ends with the end-of-data mark.
  ExchangeResult Run(std::string_view request) override;
  /// Connects, and nothing more.
  ExchangeResult Reach() override;

 private:
  ExchangeResult Connect();
  void OnDataArrival();
  void OnFrame(std::string_view received);
  void End(ExchangeResult result, Text why, TextView whatToDo);

  std::shared_ptr<CSocket> oSocket;
  platform::Timer tmrTimeout;
  std::string sReceived;
  std::size_t lSearched = 0;  // bytes of sReceived that hold no end-of-data mark
  std::optional<ExchangeResult> oResult;
};

}  // namespace ostrel
