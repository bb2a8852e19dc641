// Requests over TCP: puts the pieces of each client's request together until the end-of-data mark,
// queues complete requests, and answers one a timer tick on the connection it came from. A request
// that cannot be kept or answered for want of memory ends its own connection only; so do too many
// requests at once, and a response that the client does not take.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>

#include "gateway/RequestGate.h"
#include "gateway/Trace.h"
#include "platform/EventLoop.h"
#include "transports/ClientConnections.h"
#include "transports/Deliveries.h"
#include "transports/RequestProcessing.h"
#include "transports/SocketSlots.h"
#include "transports/TransportSettings.h"
#include "util/Text.h"

namespace ostrel {

class SocketTransport {
 public:
  /// activeSocket: index of the connection whose request is being answered, 0 for none; the logs
  /// read it as well.
  SocketTransport(const TransportSettings& settings, Trace& trace, RequestGate& gate,
                  std::int16_t& activeSocket, RequestProcessing processRequest);

  /// The server that has been created, and its end: all its connections are forgotten then, and an
  /// answer that is being sent stops.
  void Attach(ClientConnections& connections);
  void Detach();

  void oSocketServer_SocketOpened(std::int16_t socket);
  void oSocketServer_DataArrival(std::int16_t socket, TextView data);
  /// Socket 0 is the listener: the server then closes all its connections without further events.
  void oSocketServer_Error(std::int16_t socket, std::uint16_t number, TextView description);
  void oSocketServer_SocketClosed(std::int16_t socket);

  /// Answers the oldest complete request; does nothing while another is in work. Also lets go of
  /// clients that have taken nothing of their responses for five minutes.
  void tmrSocketProcess_Timer();

  /// The shut-down: what arrives from now on is dropped, what waits is not answered any more.
  void TakeNoMore() { bTakeNoMore = true; }
  /// For the shut-down to ask until it is false: whether responses are still going out, and one of
  /// the clients has taken something in the last five seconds.
  bool IsDelivering();

  /// Whether complete requests wait to be answered.
  bool HasRequests() const { return !oSlots.ProcessQueue.IsEmpty(); }
  /// A request is complete and waits to be answered.
  std::function<void()> RequestQueued;

  /// Tells the client whose request is in work that QuickBooks is still loading. False when no
  /// socket request is in work.
  bool SendLoadingNotice();

  /// Lets the user interface process pending events between the blocks of a response.
  std::function<void()> DoEvents = platform::DoEvents;
  /// Characters; a longer request ends its connection.
  std::size_t lLongestRequest = kLongestRequest;
  /// Of one connection; one more ends it.
  std::int32_t lMostWaiting = 1000;
  std::function<Deliveries::Time()> Now = &std::chrono::steady_clock::now;

 private:
  class InWork;

  void Receive(std::int16_t socket, TextView data);
  std::int32_t SlotFor(std::int16_t socket);
  bool MakeRoomFor(std::int16_t socket);
  void Answer(RequestText& request);
  void SendFailure(HeldResponse& response);
  void SendResponse(HeldResponse& response);
  bool SendBlocks(HeldResponse& response);
  bool Send(TextView data);
  void Queue(TextView data);
  void EndConnection(std::int16_t socket, TextView reason);
  void EndReply(TextView reason);
  void LetGoOfIdleClients();
  void ForgetAll();
  void StopReplyTo(std::int16_t socket);
  void Log(std::int16_t socket, TextView what, TextView value = {});

  const TransportSettings& oSettings;
  Trace& oTrace;
  RequestGate& oGate;
  std::int16_t& iActiveSocket;
  RequestProcessing ProcessRequest;

  ClientConnections* oConnections = nullptr;
  SocketSlots oSlots;
  bool bInWork = false;
  std::int16_t iReplyTo = 0;            // the connection being answered; 0 once it has gone
  std::set<std::int16_t> EndedSockets;  // what still arrives from these is dropped
  Deliveries oDeliveries;
  Deliveries::Time tNextLook;
  bool bTakeNoMore = false;
  std::optional<Deliveries::Time> oEndBegan;  // when IsDelivering was first asked
};

}  // namespace ostrel
