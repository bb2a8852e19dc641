// Connections that open, send pieces, close, break and come again under the same number, while
// requests are in work, in any order the bytes say. A plain model beside the transport knows which
// request is the next one and whose it is: no text may reach another connection or another request,
// and none may be lost.
#include <algorithm>
#include <array>
#include <deque>
#include <optional>

#include "gateway/RequestGate.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/BorrowedSocketService.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "transports/SocketTransport.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using fuzz::Require;

constexpr std::int16_t kConnections = 5;
// A letter that one byte can hold.
constexpr char16_t OnTheWire(char16_t letter) { return static_cast<char16_t>(u'!' + letter % 90); }

constexpr std::size_t kLongest = 48;
constexpr std::int32_t kMostWaiting = 6;
constexpr int kMostSteps = 400;
constexpr int kDeepest = 2;
constexpr int kConnectionReset = 10054;

// Each connection writes with a letter of its own, which a later one of its number does not have.
struct Connection {
  bool bOpen = false;
  bool bFails = false;  // its next send
  char16_t cLetter = 0;
  std::size_t lPending = 0;  // characters of the request that is arriving
  Text sReceived;            // what was sent to it since its last request began to be answered
};

struct Request {
  std::int16_t iSocket;
  char16_t cLetter;
  std::size_t lLength;
};

class Conversation : public SocketService {
 public:
  explicit Conversation(fuzz::Bytes bytes) : oBytes(bytes) {
    oSettings.lBlockSize = 1 + oBytes.Next() % 16;
    oTrace.bCommLog = false;
    oTransport.lLongestRequest = kLongest;
    oTransport.lMostWaiting = kMostWaiting;
    oTransport.DoEvents = [this] { Nested(); };
    oTransport.Start();
  }

  void Run() {
    while (!oBytes.IsAtEnd() && iSteps < kMostSteps) Step();
    while (!Expected.empty()) Tick();
  }

  bool ServerStarted() const override { return true; }
  bool StartServer(std::int32_t) override { return true; }
  void StopListening() override {}
  void StopServer() override {}
  void SendData(std::string_view bytes, std::int16_t socket) override {
    Err.Clear();
    Connection& connection = At(socket);
    Require(connection.bOpen, "nothing is sent to a connection that has gone");
    Require(oInWork && oInWork->iSocket == socket && oInWork->cLetter == connection.cLetter,
            "a response goes to the connection that asked");
    if (connection.bFails) {
      connection.bFails = false;
      bSendFailed = true;
      Err.Set(kConnectionReset, u"SendData", u"reset");
      return;
    }
    connection.sReceived.append(BytesToText(bytes));
  }

  void GatherPieces(std::int16_t socket, bool) override {
    Require(At(socket).bOpen, "pieces are gathered for a connection that is there");
  }

  void CloseSocket(std::int16_t socket) override {
    if (socket != 0) At(socket).bOpen = false;
  }

  std::size_t BytesToSend(std::int16_t) const override { return 0; }
  std::uint64_t BytesSent(std::int16_t) const override { return 0; }

 private:
  Connection& At(std::int16_t socket) {
    Require(socket >= 1 && socket <= kConnections, "a connection is known");
    return aConnections[static_cast<std::size_t>(socket)];
  }

  void Step() {
    ++iSteps;
    const std::uint8_t what = oBytes.Next();
    const auto socket = static_cast<std::int16_t>(1 + what / 16 % kConnections);
    switch (what % 16) {
      case 0:
      case 1:
      case 2:
        return Open(socket);
      case 3:
        return Close(socket);
      case 4:
        return Break(socket);
      case 5:
        return what / 16 == 15 ? BreakAll() : Break(socket);
      case 6:
      case 7:
      case 8:
        return Tick();
      case 9:
        At(socket).bFails = true;
        return;
      default:
        return Arrive(socket, oBytes.Next());
    }
  }

  void Open(std::int16_t socket) {
    Connection& connection = At(socket);
    if (connection.bOpen) return;
    connection = Connection();
    connection.bOpen = true;
    connection.cLetter = cNextLetter++;
    oTransport.oSocketServer_SocketOpened(socket);
  }

  void Close(std::int16_t socket) {
    if (!At(socket).bOpen) return;
    Forget(socket);
    oTransport.oSocketServer_SocketClosed(socket);
  }

  void Break(std::int16_t socket) {
    if (!At(socket).bOpen) return;
    Forget(socket);
    oTransport.oSocketServer_Error(socket, kConnectionReset, u"reset");
  }

  void BreakAll() {
    for (std::int16_t socket = 1; socket <= kConnections; ++socket) Forget(socket);
    oTransport.oSocketServer_Error(0, kConnectionReset, u"listener");
  }

  void Forget(std::int16_t socket) {
    Connection& connection = At(socket);
    connection.bOpen = false;
    connection.lPending = 0;
    std::erase_if(Expected, [&](const Request& request) { return request.iSocket == socket; });
  }

  // A quarter of the pieces hold the mark, with something behind it that must not count.
  void Arrive(std::int16_t socket, std::uint8_t how) {
    Connection& connection = At(socket);
    if (!connection.bOpen) return;
    const std::size_t length = how % 32;
    Text piece(length, connection.cLetter);
    const bool isComplete = how >= 192;
    if (isComplete) piece.append(1, kEndOfDataMark).append(how % 3, u'!');
    connection.lPending += length;
    if (connection.lPending > kLongest || (isComplete && Waiting(socket) >= kMostWaiting)) {
      Forget(socket);
    } else if (isComplete) {
      Expected.push_back({socket, connection.cLetter, connection.lPending});
      connection.lPending = 0;
    }
    const bool isOpen = connection.bOpen;
    oTransport.oSocketServer_DataArrival(socket, piece);
    Require(connection.bOpen == isOpen, "a connection ends when it asks too much, only then");
  }

  std::int32_t Waiting(std::int16_t socket) const {
    return static_cast<std::int32_t>(
        std::count_if(Expected.begin(), Expected.end(),
                      [&](const Request& request) { return request.iSocket == socket; }));
  }

  void Tick() {
    const bool isBusy = oInWork.has_value();
    const std::size_t before = Expected.size();
    oTransport.tmrSocketProcess_Timer();
    if (isBusy) {
      Require(Expected.size() == before, "one request at a time");
    } else if (before > 0) {
      Require(bProcessed, "the oldest request is answered");
      CheckAnswer();
    }
  }

  float Process(Text& text, Text& response) {
    Require(!Expected.empty(), "only complete requests are processed");
    oInWork = Expected.front();
    Expected.pop_front();
    bProcessed = true;
    Require(text == Text(oInWork->lLength, oInWork->cLetter), "a request is what its client sent");
    Require(oTransport.ActiveSocket() == oInWork->iSocket, "the request in work is the active one");
    At(oInWork->iSocket).sReceived.clear();
    bSendFailed = false;
    sResponse = Text(3 * oInWork->lLength, OnTheWire(oInWork->cLetter));
    response = sResponse;
    Nested();
    return 0;
  }

  void CheckAnswer() {
    bProcessed = false;
    const Request request = *std::exchange(oInWork, std::nullopt);
    const Connection& connection = At(request.iSocket);
    if (!connection.bOpen || connection.cLetter != request.cLetter || bSendFailed) return;
    const Text whole = ToText(static_cast<std::int64_t>(sResponse.size()) + 2) +
                       Text(1, kAttributeMark) + sResponse + Text(1, kEndOfDataMark);
    Require(connection.sReceived == whole, "a response arrives whole");
  }

  // The events while a request is in work and between the blocks of its response.
  void Nested() {
    if (iDepth == kDeepest) return;
    ++iDepth;
    for (int left = oBytes.Next() % 4; left > 0; --left) Step();
    --iDepth;
  }

  fuzz::Bytes oBytes;
  int iSteps = 0;
  int iDepth = 0;
  char16_t cNextLetter = 0x4E00;
  std::array<Connection, kConnections + 1> aConnections;
  std::deque<Request> Expected;
  std::optional<Request> oInWork;
  bool bProcessed = false;
  bool bSendFailed = false;
  Text sResponse;
  TransportSettings oSettings;
  doubles::FakeTrace oTrace;
  RequestGate oGate;
  SocketTransport oTransport{
      oSettings, oTrace, oGate,
      [this](Text& request, Text& response) { return Process(request, response); },
      BorrowedSocketService::Factory(*this)};
};

const fuzz::Registered kTarget("socket", [](std::string_view bytes) {
  Conversation(fuzz::Bytes(bytes)).Run();
});

}  // namespace
}  // namespace ostrel
