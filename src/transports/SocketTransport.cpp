// The way of a request over TCP. DataArrival appends a piece to the slot of its connection; the
// piece with the end-of-data mark puts the slot into the queue. A tick of the timer takes the
// oldest slot, has the request processed and sends the response in blocks.
//
// Events are handled between the blocks and while QuickBooks works, so that the client, or the
// whole server, may be gone when a call returns. Two numbers keep that apart: iActiveSocket is the
// connection whose request is in work, for the logs; iReplyTo is the connection that the response
// goes to, and becomes 0 when that has gone, since its index may be given to the next client at
// once.
//
// Everything here is bounded: the length of a request, the requests that wait for one connection,
// the slots, the bytes of all texts together, and the time in which a client takes nothing.
#include "transports/SocketTransport.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "util/CodePage.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

constexpr int kNoBuffers = 10055;        // of the system, as a socket reports it
constexpr std::size_t kQueuedBytes = 1;  // of a character on its way

constexpr TextView kNoMemory = u"no memory for its request";
constexpr TextView kNoMemoryForResponse = u"no memory for its response";
constexpr TextView kIdle = u"it took nothing of its response for five minutes";
constexpr TextView kTooLong = u"its request is too long";
constexpr TextView kNoRoom = u"no room for another request";

// How many bytes come before the first carriage return, of those that the word holds.
std::size_t BytesBeforeReturn(std::size_t word) {
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
  constexpr std::size_t kLowBits = ~std::size_t{0} / 0xFF;
  const std::size_t differs = word ^ (kLowBits * '\r');
  const std::size_t equal = (differs - kLowBits) & ~differs & (kLowBits << 7);
  return equal == 0 ? sizeof word : static_cast<std::size_t>(std::countr_zero(equal)) / 8;
}

// The bytes with their line breaks as attribute marks, in a buffer that keeps its memory. Bytes are
// half as long as characters, and are carried over a machine word at a time: what follows a
// carriage return in a word is written over by what comes next.
std::string_view WithMarks(std::string_view bytes, std::string& buffer) {
  buffer.resize(std::max(buffer.size(), bytes.size() + sizeof(std::size_t)));
  const char* from = bytes.data();
  const char* const end = from + bytes.size();
  char* to = buffer.data();
  while (from < end) {
    while (end - from >= static_cast<std::ptrdiff_t>(sizeof(std::size_t))) {
      std::size_t word;
      std::memcpy(&word, from, sizeof word);
      std::memcpy(to, &word, sizeof word);
      const std::size_t plain = BytesBeforeReturn(word);
      from += plain;
      to += plain;
      if (plain < sizeof word) break;
    }
    if (from == end) break;
    const bool isLineBreak = *from == '\r' && end - from > 1 && from[1] == '\n';
    *to++ = isLineBreak ? kAttributeMarkByte : *from;
    from += isLineBreak ? 2 : 1;
  }
  return {buffer.data(), static_cast<std::size_t>(to - buffer.data())};
}

// The beginning of a response that is an error.
Text ErrorFrame(float number) { return Text(kErrorFramePrefix).append(ToText(number)); }

Text SocketName(std::int16_t socket) { return u"Socket " + ToText(std::int64_t{socket}); }

}  // namespace

// Names the connection of the request in work while that is carried out.
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

// While it lives, header, blocks and mark of a response share packets.
class SocketTransport::Gathering {
 public:
  explicit Gathering(SocketTransport& transport) : oTransport(transport) { Gather(true); }
  ~Gathering() { Gather(false); }
  Gathering(const Gathering&) = delete;
  Gathering& operator=(const Gathering&) = delete;

 private:
  // Nothing is held back of a connection that has gone.
  void Gather(bool on) {
    if (oTransport.iReplyTo != 0) oTransport.oServer->GatherPieces(oTransport.iReplyTo, on);
  }

  SocketTransport& oTransport;
};

SocketTransport::SocketTransport(const TransportSettings& settings, Trace& trace, RequestGate& gate,
                                 RequestProcessing processRequest,
                                 SocketServiceFactory createServer)
    : oSettings(settings),
      oTrace(trace),
      oGate(gate),
      ProcessRequest(std::move(processRequest)),
      CreateServer(std::move(createServer)) {}

SocketTransport::~SocketTransport() { ReleaseServer(); }

bool SocketTransport::Start() {
  if (oServer == nullptr) {
    oServer = CreateServer(*this, oTrace);
    bTakeNoMore = false;
    oEndBegan.reset();
  }
  bRunning = oServer->ServerStarted() || Listen();
  if (bRunning) SwitchTicks(true);
  return bRunning;
}

bool SocketTransport::Listen() {
  const std::int32_t port = oSettings.lSocketPort;
  if (!oServer->StartServer(port)) return false;
  oTrace.AddStatus(u"Listenning on Socket " + ToText(std::int64_t{port}));
  return true;
}

void SocketTransport::Stop() {
  SwitchTicks(false);
  if (oServer != nullptr) oServer->StopServer();
  bRunning = false;
  ReleaseServer();
}

void SocketTransport::ReleaseServer() {
  const auto server = std::exchange(oServer, nullptr);
  ForgetAll();
}

void SocketTransport::StopListening() {
  if (oServer != nullptr) oServer->StopListening();
}

void SocketTransport::ForgetAll() {
  iReplyTo = 0;
  EndedSockets.clear();
  oDeliveries.ForgetAll();
  oSlots.ForgetAll();
}

void SocketTransport::oSocketServer_SocketOpened(std::int16_t socket) {
  // The server reuses an index it has closed itself, which told no event.
  StopReplyTo(socket);
  EndedSockets.erase(socket);
  oDeliveries.Forget(socket);
  oSlots.ForgetClosed(socket);
}

void SocketTransport::oSocketServer_DataArrival(std::int16_t socket, TextView data) {
  if (bTakeNoMore || EndedSockets.contains(socket)) return;
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
  // Kept: data that follows the mark in the same piece is dropped; clients depend on it.
  if (complete) data = data.substr(0, mark);
  Log(socket, u"Looking for End of data: ",
      ToText(complete ? static_cast<std::int64_t>(mark) + 1 : 0));

  RequestText& request = oSlots.At(slot).sRequest;
  if (data.size() > lLongestRequest - request.Length()) return EndConnection(socket, kTooLong);
  request.Append(data);
  if (!complete) return;
  if (oSlots.Waiting(socket) >= lMostWaiting) {
    return EndConnection(socket,
                         u"more than " + ToText(std::int64_t{lMostWaiting}) + u" requests wait");
  }
  Log(socket, u"Adds to Process Queue");
  oSlots.Queue(socket, slot);
  if (RequestQueued) RequestQueued();
}

std::int32_t SocketTransport::SlotFor(std::int16_t socket) {
  if (const std::int32_t slot = oSlots.ReceivingSlot(socket); slot != 0) return slot;
  for (;;) {
    if (const std::int32_t slot = oSlots.StartReceiving(socket); slot != 0) return slot;
    if (oSlots.CanGrow()) {
      Log(socket, u"Resize socket Storage Array: ", ToText(std::int64_t{oSlots.SizeAfterGrowth()}));
      oSlots.Grow();
    } else if (!oSlots.FreeServed() && !MakeRoomFor(socket)) {
      return 0;
    }
  }
}

// Nobody is shut out by the many requests of another.
bool SocketTransport::MakeRoomFor(std::int16_t socket) {
  const std::int16_t busiest = oSlots.Busiest();
  if (oSlots.Waiting(busiest) <= oSlots.Waiting(socket) + 1) return false;
  EndConnection(busiest, kNoRoom);
  return true;
}

void SocketTransport::oSocketServer_Error(std::int16_t socket, std::uint16_t number,
                                          TextView description) {
  oTrace.AddStatus(u"Socket Error " + ToText(std::int64_t{socket}) + u" - " +
                   ToText(std::int64_t{number}) + u" - " + Text(description));
  iActiveSocket = 0;
  if (oServer != nullptr) oServer->CloseSocket(socket);
  if (socket == 0) return ForgetAll();
  StopReplyTo(socket);
  oDeliveries.Forget(socket);
  oSlots.ForgetConnection(socket);
  EndedSockets.insert(socket);
}

void SocketTransport::oSocketServer_SocketClosed(std::int16_t socket) {
  StopReplyTo(socket);
  oDeliveries.Forget(socket);
  oSlots.ForgetClosed(socket);
}

void SocketTransport::tmrSocketProcess_Timer() {
  LetGoOfIdleClients();
  if (bTakeNoMore || oSlots.ProcessQueue.IsEmpty()) return;
  const auto pass = oGate.TryEnter();
  if (!pass) return;

  auto request = oSlots.TakeOldest();
  const InWork inWork(*this, request->iSocket);
  try {
    Respond(request->sRequest);
  } catch (const std::bad_alloc&) {
    EndReply(kNoMemory);
  } catch (const std::length_error&) {
    EndReply(kTooLong);
  } catch (const RunTimeError& error) {
    Log(request->iSocket, u"Error: ", error.Description);
  } catch (const std::exception& error) {
    Log(request->iSocket, u"Error: ", FromUtf8(error.what()));
  }
}

// The request's text goes before the response is sent, and its share of the budget with it.
void SocketTransport::Respond(RequestText& request) {
  HeldResponse response;
  {
    Text text = request.Take();
    response = ProcessWithinBudget(ProcessRequest, text, kQueuedBytes);
  }
  request = {};
  if (response.fResult > 0) {
    SendFailure(response);
  } else {
    SendResponse(response);
  }
}

void SocketTransport::SendFailure(HeldResponse& response) {
  Text& reply = response.sText;
  reply.insert(0, ErrorFrame(response.fResult).append(kAttributeMarkText));
  reply.append(kEndOfDataMarkText);
  response.oShare.Resize(reply.capacity() * sizeof(char16_t));  // the rest is for the queue
  if (Send(TextToBytes(reply))) Log(iReplyTo, u"Results: ", reply);
}

void SocketTransport::SendResponse(HeldResponse& response) {
  // Kept: the header counts the characters before line breaks are replaced, and its own send is not
  // judged; clients use it as a size hint and read up to the end-of-data mark.
  const auto length = static_cast<std::int64_t>(response.sText.size());
  const Gathering gathering(*this);
  if (iReplyTo != 0) Queue(TextToBytes(ToText(length + 2)) + kAttributeMarkByte);
  if (SendBlocks(response)) Send({&kEndOfDataByte, 1});
}

bool SocketTransport::SendBlocks(HeldResponse& response) {
  std::string block, marked;
  TextView rest = response.sText;
  while (!rest.empty()) {
    const TextView piece = rest.substr(0, oSettings.BlockSize());
    rest.remove_prefix(piece.size());
    response.oShare.Resize(response.oShare.Size() - piece.size() * kQueuedBytes);
    // Kept: a line break across the edge of two blocks goes out as CR and LF, as clients expect it.
    block.resize(std::max(block.size(), piece.size()));
    CopyTextAsBytes(piece, block.data());
    const auto bytes = WithMarks(std::string_view(block).substr(0, piece.size()), marked);
    if (!Send(bytes)) return false;
    if (oTrace.CommLogEnabled()) Log(iReplyTo, u"Results: ", BytesToText(bytes));
    DoEvents();
  }
  return true;
}

bool SocketTransport::Send(std::string_view bytes) {
  if (iReplyTo == 0) return false;
  Queue(bytes);
  const int error = Err.Number;
  if (error == 0) return true;
  Log(iReplyTo, u"Socket Send Error: ",
      ToText(std::int64_t{error}) + u" (" + Err.Source + u") " + Err.Description);
  // The connection is still there: its client would wait for the rest, or take the next response
  // for it.
  if (error == ErrorNumber::kOutOfMemory || error == kNoBuffers) EndReply(kNoMemoryForResponse);
  return false;
}

void SocketTransport::Queue(std::string_view bytes) {
  oServer->SendData(bytes, iReplyTo);
  oDeliveries.Queued(*oServer, iReplyTo, Now());
}

bool SocketTransport::SendLoadingNotice() {
  if (!bInWork) return false;
  if (iReplyTo != 0) {
    Queue(TextToBytes(ErrorFrame(ErrorNumber::kStillLoading)) + kEndOfDataByte);
  }
  return true;
}

void SocketTransport::LetGoOfIdleClients() {
  const auto now = Now();
  if (oServer == nullptr || now < tNextLook) return;
  tNextLook = now + seconds(1);
  oDeliveries.Look(*oServer, now);
  for (const std::int16_t socket : oDeliveries.IdleSince(now - minutes(5))) {
    oDeliveries.Forget(socket);
    EndConnection(socket, kIdle);
    oServer->CloseSocket(socket);  // without what is queued
  }
}

bool SocketTransport::IsDelivering() {
  if (oServer == nullptr) return false;
  const auto now = Now();
  if (!oEndBegan) oEndBegan = now;
  oDeliveries.Look(*oServer, now);
  const auto lastProgress = std::max(*oEndBegan, oDeliveries.LastProgress());
  return !oDeliveries.AllDone() && now - lastProgress < seconds(5);
}

void SocketTransport::EndConnection(std::int16_t socket, TextView reason) {
  StopReplyTo(socket);
  oSlots.ForgetConnection(socket);
  EndedSockets.insert(socket);
  if (oServer != nullptr) oServer->CloseSocket(socket);
  oTrace.AddStatus(SocketName(socket) + u" ended: " + Text(reason));
}

// Nobody when the client has gone: its index may be another's by now.
void SocketTransport::EndReply(TextView reason) {
  if (iReplyTo != 0) EndConnection(iReplyTo, reason);
}

void SocketTransport::StopReplyTo(std::int16_t socket) {
  if (iReplyTo == socket) iReplyTo = 0;
}

void SocketTransport::Log(std::int16_t socket, TextView what, TextView value) {
  if (!oTrace.CommLogEnabled()) return;
  oTrace.WriteCommLog(SocketName(socket).append(u"\t").append(what).append(value));
}

}  // namespace ostrel
