// Requests over TCP: puts the pieces of each client's request together until the end-of-data mark,
// queues complete requests, and carries one out a timer tick; the response goes out on the
// connection of its request. A request for which, or for whose response, there is no memory ends
// its own connection only; so do too many requests at once, and a response that the client does not
// take.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "gateway/RequestGate.h"
#include "gateway/Trace.h"
#include "platform/EventLoop.h"
#include "transports/Deliveries.h"
#include "transports/RequestProcessing.h"
#include "transports/SocketService.h"
#include "transports/SocketSlots.h"
#include "transports/TransportSettings.h"
#include "util/Text.h"

namespace ostrel {

class SocketTransport {
 public:
  SocketTransport(const TransportSettings& settings, Trace& trace, RequestGate& gate,
                  RequestProcessing processRequest, SocketServiceFactory createServer);
  ~SocketTransport();
  SocketTransport(const SocketTransport&) = delete;
  SocketTransport& operator=(const SocketTransport&) = delete;

  /// Listens on the port of the settings, unless it listens already, and has the ticks switched on.
  /// False when the port cannot be had. Events may be dispatched before it returns; none of them
  /// may stop the transport.
  bool Start();
  /// Closes the listener and every connection; all of them are forgotten, and a response that is
  /// being sent stops.
  void Stop();
  bool IsRunning() const { return bRunning; }
  /// Index of the connection whose request is in work; 0: none.
  std::int16_t ActiveSocket() const { return iActiveSocket; }

  void oSocketServer_SocketOpened(std::int16_t socket);
  void oSocketServer_DataArrival(std::int16_t socket, TextView data);
  /// Socket 0 is the listener: the server then closes all its connections without further events.
  void oSocketServer_Error(std::int16_t socket, std::uint16_t number, TextView description);
  void oSocketServer_SocketClosed(std::int16_t socket);

  /// Carries out the oldest complete request; does nothing while another is in work. Also lets go
  /// of clients that have taken nothing of their responses for five minutes.
  void tmrSocketProcess_Timer();

  /// The shut-down: what arrives from now on is dropped, what waits is not carried out any more.
  void TakeNoMore() { bTakeNoMore = true; }
  /// The shut-down: no new connections; those that are there stay.
  void StopListening();
  /// For the shut-down to ask until it is false: whether responses are still going out, and one of
  /// the clients has taken something in the last five seconds.
  bool IsDelivering();

  /// Whether complete requests wait.
  bool HasRequests() const { return !oSlots.ProcessQueue.IsEmpty(); }
  /// A request is complete and waits.
  std::function<void()> RequestQueued;
  /// Switches the timer that calls tmrSocketProcess_Timer.
  std::function<void(bool on)> SwitchTicks = [](bool) {};

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
  class Gathering;
  class InWork;

  bool Listen();
  void ReleaseServer();
  void Receive(std::int16_t socket, TextView data);
  std::int32_t SlotFor(std::int16_t socket);
  bool MakeRoomFor(std::int16_t socket);
  void Respond(RequestText& request);
  void SendFailure(HeldResponse& response);
  void SendResponse(HeldResponse& response);
  bool SendBlocks(HeldResponse& response);
  bool Send(std::string_view bytes);
  void Queue(std::string_view bytes);
  void EndConnection(std::int16_t socket, TextView reason);
  void EndReply(TextView reason);
  void LetGoOfIdleClients();
  void ForgetAll();
  void StopReplyTo(std::int16_t socket);
  void Log(std::int16_t socket, TextView what, TextView value = {});

  const TransportSettings& oSettings;
  Trace& oTrace;
  RequestGate& oGate;
  RequestProcessing ProcessRequest;

  SocketServiceFactory CreateServer;

  std::unique_ptr<SocketService> oServer;
  SocketSlots oSlots;
  bool bRunning = false;
  bool bInWork = false;
  std::int16_t iActiveSocket = 0;
  std::int16_t iReplyTo = 0;            // the connection of the request in work; 0 once it has gone
  std::set<std::int16_t> EndedSockets;  // what still arrives from these is dropped
  Deliveries oDeliveries;
  Deliveries::Time tNextLook;
  bool bTakeNoMore = false;
  std::optional<Deliveries::Time> oEndBegan;  // when IsDelivering was first asked
};

}  // namespace ostrel
