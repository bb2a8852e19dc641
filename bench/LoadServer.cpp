// Both servers of the comparison run in a process of their own, and the load program drives them
// over the wire. The gateway is the product's, from its sockets to its request handler; only
// QuickBooks is a double that responds at once, so that nothing but the gateway is measured. The
// plain copy sends as many bytes from memory, blocking: the least that any server could cost.
#include "bench/LoadServer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bench/SampleText.h"
#include "bench/System.h"
#include "gateway/RequestHandler.h"
#include "platform/EventLoop.h"
#include "sockets/CSocketServer.h"
#include "tests/support/BorrowedSocketService.h"
#include "transports/SocketTransport.h"

namespace ostrel::bench {
namespace {

class NoTrace : public Trace {
 public:
  void AddStatus(TextView) override {}
  bool CommLogEnabled() const override { return false; }
  void WriteCommLog(TextView) override {}
  Text HistoryHeader() const override { return {}; }
  void WriteHistoryFile(TextView) override {}
  void WriteStatusFile(TextView) override {}
};

// Responds at once.
class QuickBooks : public RequestProcessor {
 public:
  explicit QuickBooks(Text& prepared) : sPrepared(prepared) {}

  void OpenConnection(TextView, TextView) override {}
  Text BeginSession(TextView, FileMode) override { return u"ticket"; }
  Text ProcessRequest(TextView, TextView request) override {
    static const Text handOut = FromAscii(kHandOutAsQuickBooks);
    return Contains(request, handOut) ? std::exchange(sPrepared, {}) : sResponse;
  }
  Text GetCurrentCompanyFileName(TextView) override { return u"load.qbw"; }
  void EndSession(TextView) override {}
  void CloseConnection() override {}
  void Create() override {}
  void GiveUp() override {}

 private:
  Text& sPrepared;
  Text sResponse = SampleResponse(kResponseCharacters);
};

class LoadServer : private SocketService {
 public:
  LoadServer();
  std::int32_t Start();

 private:
  bool ServerStarted() const override { return oServer.ServerStarted(); }
  bool StartServer(std::int32_t port) override {
    Text address = u"127.0.0.1";
    return oServer.StartServer(port, address);
  }
  void StopListening() override { oServer.StopListening(); }
  void StopServer() override { oServer.StopServer(); }
  void SendData(std::string_view bytes, std::int16_t socket) override {
    oServer.SendData(AsBytes(bytes), socket);
  }
  void GatherPieces(std::int16_t socket, bool on) override { oServer.GatherPieces(socket, on); }
  void CloseSocket(std::int16_t socket) override { oServer.CloseSocket(socket); }
  std::size_t BytesToSend(std::int16_t socket) const override {
    return oServer.GetBytesToSend(socket);
  }
  std::uint64_t BytesSent(std::int16_t socket) const override {
    return oServer.GetBytesSent(socket);
  }
  float ProcessRequest(Text& request, Text& response);

  CSocketServer oServer;  // outlives the transport
  Text sPrepared;
  NoTrace oTrace;
  GatewaySettings oGatewaySettings;
  TransportSettings oTransportSettings;
  IdleClose oIdleClose;
  RequestGate oGate;
  qbxml oSession{[this] { return std::make_unique<QuickBooks>(sPrepared); }};
  HostQuery oHostQuery{oSession, oIdleClose, oTrace, platform::SystemClock()};
  RequestHandler oHandler{oGatewaySettings, oSession, oHostQuery,
                          oIdleClose,       oTrace,   platform::SystemClock()};
  SocketTransport oTransport{
      oTransportSettings, oTrace, oGate,
      [this](Text& request, Text& response) { return ProcessRequest(request, response); },
      BorrowedSocketService::Factory(*this)};
  platform::Timer oTick{std::chrono::milliseconds(100),
                        [this] { oTransport.tmrSocketProcess_Timer(); }};
};

LoadServer::LoadServer() {
  SocketServerEvents& events = oServer.Events;
  events.SocketOpened = [this](std::int16_t socket, std::int32_t, TextView, TextView) {
    oTransport.oSocketServer_SocketOpened(socket);
  };
  events.DataArrival = [this](std::int16_t socket, const Text& data, std::int32_t, TextView,
                              TextView) { oTransport.oSocketServer_DataArrival(socket, data); };
  events.Error = [this](std::int16_t socket, std::int16_t number, const Text& description,
                        std::int32_t,
                        TextView) { oTransport.oSocketServer_Error(socket, number, description); };
  events.SocketClosed = [this](std::int16_t socket, std::int32_t, TextView, TextView) {
    oTransport.oSocketServer_SocketClosed(socket);
  };
  oTransportSettings.lBlockSize = kDefaultBlockSize;
  oTransport.SwitchTicks = [this](bool on) { oTick.SetEnabled(on); };
  oTransport.RequestQueued = oGate.Freed = [this] {
    if (oTransport.HasRequests() && !oGate.IsBusy()) oTick.TickSoon();
  };
}

// The port; 0 when it could not start.
std::int32_t LoadServer::Start() { return oTransport.Start() ? oServer.ServerPort() : 0; }

float LoadServer::ProcessRequest(Text& request, Text& response) {
  static const Text prepare = FromAscii(kPrepare);
  static const Text take = FromAscii(kTake);
  static const Text handOut = FromAscii(kHandOut);
  if (request == handOut) {
    response = std::exchange(sPrepared, {});
  } else if (request.starts_with(take)) {
    response = u"taken";
  } else if (request.starts_with(prepare)) {
    sPrepared = SampleResponse(std::stoul(ToUtf8(request.substr(prepare.size()))));
    response = u"prepared";
  } else {
    return oHandler.ProcessRequest(request, response);
  }
  return 0;
}

// A plain copy, blocking: out of memory that holds all the bytes, into a buffer that is used again.
class CopyServer {
 public:
  std::uint16_t Port() const { return oListener.Port(); }

  void Serve() {
    for (;;) ServeOne(oListener.Accept());
  }

 private:
  void ServeOne(const Connection& client) {
    std::array<char, sizeof(CopyCommand)> command;
    while (client.Receive(command) == command.size()) {
      const auto [direction, bytes] = std::bit_cast<CopyCommand>(command);
      if (direction == CopyCommand::Direction::kOut) {
        SendBytes(client, bytes);
      } else {
        ReceiveBytes(client, bytes);
        client.Send(std::span(oBuffer).first(1));
      }
    }
  }

  void SendBytes(const Connection& client, std::uint64_t bytes) {
    oBytes.resize(std::max<std::size_t>(bytes, oBytes.size()), 'x');
    client.Send(std::span(oBytes).first(bytes));
  }

  void ReceiveBytes(const Connection& client, std::uint64_t bytes) {
    while (bytes > 0) {
      const auto piece = std::min<std::uint64_t>(bytes, oBuffer.size());
      const auto received = client.Receive(std::span(oBuffer).first(piece));
      if (received == 0) return;
      bytes -= received;
    }
  }

  Listener oListener;
  std::vector<char> oBytes;
  std::vector<char> oBuffer = std::vector<char>(64 * 1024);
};

}  // namespace

int RunLoadServer() {
  CopyServer copies;
  std::thread([&copies] { copies.Serve(); }).detach();
  LoadServer server;
  const std::int32_t port = server.Start();
  if (port == 0) return 1;
  std::printf("%d %d\n", port, copies.Port());
  std::fflush(stdout);
  return platform::RunEventLoop();
}

}  // namespace ostrel::bench
