#include "transports/SocketTransport.h"

#include <new>
#include <stdexcept>
#include <utility>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

constexpr TextView kNoMemory = u"no memory for its request";
constexpr TextView kTooLong = u"its request is too long";
constexpr TextView kNoRoom = u"no room for another request";
constexpr TextView kAttributeMarkText(&kAttributeMark, 1);
constexpr TextView kEndOfDataMarkText(&kEndOfDataMark, 1);

// `block` with its line breaks as attribute marks, into a buffer that keeps its memory.
void ReplaceLineBreaks(TextView block, Text& replaced) {
  replaced.clear();
  std::size_t done = 0;
  for (std::size_t at; (at = block.find(kCrLf, done)) != TextView::npos; done = at + kCrLf.size()) {
    replaced.append(block, done, at - done).push_back(kAttributeMark);
  }
  replaced.append(block, done);
}

Text SocketName(std::int16_t socket) { return u"Socket " + ToText(std::int64_t{socket}); }

}  // namespace

// Names the connection being answered for as long as it is.
class SocketTransport::InWork {
 public:
  InWork(SocketTransport& transport, std::int16_t socket) : oTransport(transport) {
    oTransport.bInWork = true;
    oTransport.iActiveSocket = oTransport.iReplyTo = socket;
  }
  ~InWork() {
    oTransport.bInWork = false;
    oTransport.iActiveSocket = oTransport.iReplyTo = 0;
  }
  InWork(const InWork&) = delete;
  InWork& operator=(const InWork&) = delete;

 private:
  SocketTransport& oTransport;
};

SocketTransport::SocketTransport(const TransportSettings& settings, Trace& trace, RequestGate& gate,
                                 std::int16_t& activeSocket, RequestProcessing processRequest)
    : oSettings(settings),
      oTrace(trace),
      oGate(gate),
      iActiveSocket(activeSocket),
      ProcessRequest(std::move(processRequest)) {}

void SocketTransport::Attach(ClientConnections& connections) { oConnections = &connections; }

void SocketTransport::Detach() {
  oConnections = nullptr;
  iReplyTo = 0;
  EndedSockets.clear();
  oSlots.ForgetAll();
}

void SocketTransport::oSocketServer_SocketOpened(std::int16_t socket) {
  // The server reuses an index it has closed itself, which raised no event.
  StopReplyTo(socket);
  EndedSockets.erase(socket);
  oSlots.ForgetClosed(socket);
}

void SocketTransport::oSocketServer_DataArrival(std::int16_t socket, TextView data) {
  if (EndedSockets.contains(socket)) return;
  try {
    Receive(socket, data);
  } catch (const std::bad_alloc&) {
    EndConnection(socket, kNoMemory);
  } catch (const std::length_error&) {
    EndConnection(socket, kTooLong);
  }
}

void SocketTransport::Receive(std::int16_t socket, TextView data) {
  Log(socket, u"Data Arrival: ", data);
  const std::int32_t slot = SlotFor(socket);
  if (slot == 0) return EndConnection(socket, kNoRoom);
  Log(socket, u"Storage Array Position: ", ToText(std::int64_t{slot}));

  const std::size_t mark = data.find(kEndOfDataMark);
  const bool complete = mark != TextView::npos;
  // What follows the mark in the same piece is dropped (kept: clients depend on it).
  if (complete) data = data.substr(0, mark);
  Log(socket, u"Looking for End of data: ",
      ToText(complete ? static_cast<std::int64_t>(mark) + 1 : 0));

  RequestText& request = oSlots.At(slot).sRequest;
  if (data.size() > lLongestRequest - request.Length()) return EndConnection(socket, kTooLong);
  request.Append(data);
  if (!complete) return;
  Log(socket, u"Adds to Process Queue");
  oSlots.Queue(socket, slot);
}

std::int32_t SocketTransport::SlotFor(std::int16_t socket) {
  if (const std::int32_t slot = oSlots.ReceivingSlot(socket); slot != 0) return slot;
  for (;;) {
    if (const std::int32_t slot = oSlots.StartReceiving(socket); slot != 0) return slot;
    if (oSlots.CanGrow()) {
      Log(socket, u"Resize socket Storage Array: ", ToText(std::int64_t{oSlots.SizeAfterGrowth()}));
      oSlots.Grow();
    } else if (!oSlots.FreeAnswered()) {
      return 0;
    }
  }
}

void SocketTransport::oSocketServer_Error(std::int16_t socket, std::int16_t number,
                                          TextView description) {
  oTrace.AddStatus(u"Socket Error " + ToText(std::int64_t{socket}) + u" - " +
                   ToText(std::int64_t{number}) + u" - " + Text(description));
  iActiveSocket = 0;
  if (oConnections != nullptr) oConnections->CloseSocket(socket);
  if (socket == 0) {
    iReplyTo = 0;
    EndedSockets.clear();
    oSlots.ForgetAll();
    return;
  }
  StopReplyTo(socket);
  oSlots.ForgetConnection(socket);
  EndedSockets.insert(socket);
}

void SocketTransport::oSocketServer_SocketClosed(std::int16_t socket) {
  StopReplyTo(socket);
  oSlots.ForgetClosed(socket);
}

void SocketTransport::tmrSocketProcess_Timer() {
  if (oSlots.ProcessQueue.IsEmpty()) return;
  const auto pass = oGate.TryEnter();
  if (!pass) return;

  auto request = oSlots.TakeOldest();
  const InWork inWork(*this, request->iSocket);
  try {
    Answer(request->sRequest.Take());
  } catch (const std::bad_alloc&) {
    EndConnection(request->iSocket, kNoMemory);
  } catch (const std::length_error&) {
    EndConnection(request->iSocket, kTooLong);
  } catch (const RunTimeError& error) {
    Log(request->iSocket, u"Error: ", error.Description);
  } catch (const std::exception& error) {
    Log(request->iSocket, u"Error: ", FromUtf8(error.what()));
  }
}

void SocketTransport::Answer(Text request) {
  Text response;
  const float result = ProcessRequest(request, response);
  request = Text();
  if (result > 0) {
    SendFailure(result, response);
  } else {
    SendResponse(response);
  }
}

void SocketTransport::SendFailure(float result, TextView response) {
  Text reply = u"ERROR: " + ToText(result);
  reply.append(kAttributeMarkText).append(response).append(kEndOfDataMarkText);
  if (Send(reply)) Log(iReplyTo, u"Results: ", reply);
}

void SocketTransport::SendResponse(TextView response) {
  // Counts the characters before line breaks are replaced, and its own send is not judged (kept:
  // clients use it as a size hint and read up to the end-of-data mark).
  const Text header =
      ToText(static_cast<std::int64_t>(response.size()) + 2).append(kAttributeMarkText);
  if (iReplyTo != 0) oConnections->SendData(header, iReplyTo);
  if (SendBlocks(response)) Send(kEndOfDataMarkText);
}

bool SocketTransport::SendBlocks(TextView response) {
  Text block;
  while (!response.empty()) {
    const TextView piece = response.substr(0, static_cast<std::size_t>(oSettings.lBlockSize));
    response.remove_prefix(piece.size());
    // A line break across the edge of two blocks goes out as CR and LF (kept: required).
    ReplaceLineBreaks(piece, block);
    if (!Send(block)) return false;
    Log(iReplyTo, u"Results: ", block);
    DoEvents();
  }
  return true;
}

bool SocketTransport::Send(TextView data) {
  if (iReplyTo == 0) return false;
  oConnections->SendData(data, iReplyTo);
  if (Err.Number == 0) return true;
  Log(iReplyTo, u"Socket Send Error: ",
      ToText(std::int64_t{Err.Number}) + u" (" + Err.Source + u") " + Err.Description);
  return false;
}

bool SocketTransport::SendLoadingNotice() {
  if (!bInWork) return false;
  if (iReplyTo != 0) oConnections->SendData(u"ERROR: 99\u001F", iReplyTo);
  return true;
}

void SocketTransport::EndConnection(std::int16_t socket, TextView reason) {
  StopReplyTo(socket);
  oSlots.ForgetConnection(socket);
  EndedSockets.insert(socket);
  if (oConnections != nullptr) oConnections->CloseSocket(socket);
  oTrace.AddStatus(SocketName(socket) + u" ended: " + Text(reason));
}

void SocketTransport::StopReplyTo(std::int16_t socket) {
  if (iReplyTo == socket) iReplyTo = 0;
}

void SocketTransport::Log(std::int16_t socket, TextView what, TextView value) {
  if (!oTrace.CommLogEnabled()) return;
  oTrace.WriteCommLog(SocketName(socket).append(u"\t").append(what).append(value));
}

}  // namespace ostrel
