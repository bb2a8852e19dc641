#include "clients/GatewayExchange.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "util/Cures.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

std::optional<int> ErrorNumber(std::string_view header) {
  if (!header.starts_with(ToUtf8(kErrorFramePrefix))) return std::nullopt;
  header.remove_prefix(kErrorFramePrefix.size());
  int number = 0;
  std::from_chars(header.data(), header.data() + header.size(), number);
  return number;
}

// frame: without the end-of-data mark.
Response ResponseInFrame(std::string_view frame) {
  const std::size_t mark = std::min(frame.find(kAttributeMarkByte), frame.size());
  const std::string_view body = frame.substr(std::min(mark + 1, frame.size()));
  return {ErrorNumber(frame.substr(0, mark)), std::string(body)};
}

}  // namespace

GatewayExchange::GatewayExchange(TextView host, int port, std::chrono::milliseconds timeout)
    : oSocket(CSocket::Create()), tmrTimeout(timeout, [this] {
        End(ExchangeResult::kTimeout, u"there was no answer in time",
            CureText(CureOf::kGateway, kNoResponseInTime));
      }) {
  oSocket->RemoteHost(host);
  oSocket->RemotePort(port);
}

ExchangeResult GatewayExchange::Run(std::string_view request) {
  const std::vector<std::uint8_t> bytes(request.begin(), request.end());
  oSocket->Events.OnConnect = [&] { oSocket->SendData(std::span(bytes)); };
  return Connect();
}

ExchangeResult GatewayExchange::Reach() {
  oSocket->Events.OnConnect = [this] { End(ExchangeResult::kResponded, {}, {}); };
  return Connect();
}

ExchangeResult GatewayExchange::Connect() {
  oSocket->Events.OnDataArrival = [this](std::int32_t) { OnDataArrival(); };
  oSocket->Events.OnClose = [this] {
    End(ExchangeResult::kNotReached, u"the gateway closed the connection before its answer",
        CureText(CureOf::kGateway, kEndedEarly));
  };
  oSocket->Events.OnError = [this](std::uint16_t number, Text& description, auto&&...) {
    End(ExchangeResult::kNotReached, description, CureText(CureOf::kSocket, number));
  };
  tmrTimeout.SetEnabled(true);
  try {
    oSocket->Connect();
  } catch (const RunTimeError& error) {
    End(ExchangeResult::kNotReached, error.Description, CureText(CureOf::kSocket, error.Number));
  }
  if (!oResult) platform::RunEventLoop();
  oSocket->Events = {};
  return *oResult;
}

void GatewayExchange::OnDataArrival() {
  std::vector<std::uint8_t> piece;
  oSocket->GetData(piece);
  sReceived.append(piece.begin(), piece.end());
  while (!oResult) {
    const std::size_t end = sReceived.find(kEndOfDataByte, lSearched);
    if (end == std::string::npos) break;
    const std::string whole = sReceived.substr(0, end + 1);
    sReceived.erase(0, end + 1);
    lSearched = 0;
    OnFrame(whole);
  }
  lSearched = sReceived.size();
}

void GatewayExchange::OnFrame(std::string_view received) {
  if (Received) Received(received);
  received.remove_suffix(1);
  response = ResponseInFrame(received);
  if (response.errorNumber == ErrorNumber::kStillLoading) {
    if (StillLoading) StillLoading();
    return;
  }
  End(ExchangeResult::kResponded, {}, {});
}

void GatewayExchange::End(ExchangeResult result, Text why, TextView whatToDo) {
  if (oResult) return;
  oResult = result;
  reason = std::move(why);
  cure = whatToDo;
  platform::QuitEventLoop(0);
}

}  // namespace ostrel
