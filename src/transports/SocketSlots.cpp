// Each slot knows its entries in the lists, and each connection its first slot, so that nothing
// here looks for a request in a list. A slot is in exactly one state: free (in FreeSlots),
// receiving (in ReceivingSockets), or queued (in QueuedSockets, and in ProcessQueue until its
// request is taken out). The slots of one connection in QueuedSockets form a chain through
// lNextSlot.
#include "transports/SocketSlots.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace ostrel {
namespace {

constexpr std::int32_t kGrowth = 10;

std::int32_t NumberIn(const LinkedList::Value& value) { return std::get<std::int32_t>(value); }

std::int32_t AddKeyed(LinkedList& list, std::int16_t socket, std::int32_t slot) {
  const std::int32_t entry = list.Add(std::int32_t{socket});
  list.ExtraData(entry, slot);
  return entry;
}

void RemoveEach(LinkedList& list) {
  for (list.MoveFirst(); list.CurrIndex() != 0;) list.Remove();
}

}  // namespace

const SocketSlots::Connection& SocketSlots::Known(std::int16_t socket) const {
  static const Connection none;
  const auto index = static_cast<std::uint16_t>(socket);
  return index < oConnections.size() ? oConnections[index] : none;
}

SocketSlots::Connection& SocketSlots::ConnectionOf(std::int16_t socket) {
  const auto index = static_cast<std::uint16_t>(socket);
  if (index >= oConnections.size()) oConnections.resize(index + std::size_t{1});
  return oConnections[index];
}

std::int32_t SocketSlots::ReceivingSlot(std::int16_t socket) const {
  const std::int32_t entry = Known(socket).lReceivingEntry;
  return entry == 0 ? 0 : NumberIn(ReceivingSockets.ExtraData(entry));
}

std::int32_t SocketSlots::StartReceiving(std::int16_t socket) {
  const std::int32_t slot = FirstFreeSlot();
  if (slot == 0) return 0;
  ConnectionOf(socket).lReceivingEntry = AddKeyed(ReceivingSockets, socket, slot);
  FreeSlots.MoveFirst();
  FreeSlots.Remove();
  At(slot).iSocket = socket;
  return slot;
}

bool SocketSlots::CanGrow() const {
  return SizeAfterGrowth() <= std::numeric_limits<std::int16_t>::max();
}

std::int32_t SocketSlots::SizeAfterGrowth() const {
  return (iStorageSize == 0 ? 1 : iStorageSize) + kGrowth;
}

void SocketSlots::Grow() {
  const std::int32_t size = SizeAfterGrowth();
  SocketStorage.resize(static_cast<std::size_t>(size));
  iStorageSize = static_cast<std::int16_t>(size);
  for (std::int32_t slot = size - kGrowth; slot <= size; ++slot) FreeSlots.Add(slot);
}

bool SocketSlots::FreeServed() {
  bool any = false;
  for (Connection& connection : oConnections) any = FreeServedOf(connection) || any;
  return any;
}

bool SocketSlots::FreeServedOf(Connection& connection) {
  const std::int32_t before = QueuedSockets.Count();
  std::int32_t waiting = 0;
  for (std::int32_t slot = connection.lFirstQueued; slot != 0;) {
    const std::int32_t next = At(slot).lNextSlot;
    if (At(slot).lProcessEntry == 0) {
      FreeSlot(slot);
    } else {
      At(slot).lNextSlot = std::exchange(waiting, slot);
    }
    slot = next;
  }
  connection.lFirstQueued = waiting;
  return QueuedSockets.Count() < before;
}

// Each step leaves the slot where ForgetConnection finds it, should there be no memory for the
// next.
void SocketSlots::Queue(std::int16_t socket, std::int32_t slot) {
  Connection& connection = ConnectionOf(socket);
  Slot& queued = At(slot);
  queued.lQueuedEntry = AddKeyed(QueuedSockets, socket, slot);
  queued.lNextSlot = std::exchange(connection.lFirstQueued, slot);
  ReceivingSockets.Remove(std::exchange(connection.lReceivingEntry, 0));
  queued.lProcessEntry = ProcessQueue.Add(slot);
  ++connection.lWaiting;
}

std::optional<SocketSlots::Request> SocketSlots::TakeOldest() {
  if (ProcessQueue.IsEmpty()) return std::nullopt;
  ProcessQueue.MoveFirst();
  Slot& slot = At(NumberIn(ProcessQueue.Item()));
  ProcessQueue.Remove();
  slot.lProcessEntry = 0;
  --ConnectionOf(slot.iSocket).lWaiting;
  return Request{slot.iSocket, std::exchange(slot.sRequest, {})};
}

std::int16_t SocketSlots::Busiest() const {
  const auto busiest = std::max_element(
      oConnections.begin(), oConnections.end(),
      [](const Connection& a, const Connection& b) { return a.lWaiting < b.lWaiting; });
  const bool any = busiest != oConnections.end() && busiest->lWaiting > 0;
  return static_cast<std::int16_t>(any ? busiest - oConnections.begin() : 0);
}

void SocketSlots::ForgetClosed(std::int16_t socket) {
  if (FreeQueued(socket)) {
    FreeReceiving(socket);
  } else if (const std::int32_t slot = ReceivingSlot(socket); slot != 0) {
    At(slot).sRequest = {};
  }
}

void SocketSlots::ForgetConnection(std::int16_t socket) {
  FreeQueued(socket);
  FreeReceiving(socket);
}

void SocketSlots::ForgetAll() {
  for (LinkedList* list : {&ProcessQueue, &QueuedSockets, &ReceivingSockets}) RemoveEach(*list);
  oConnections.clear();
  for (std::int32_t slot = 1; slot <= iStorageSize; ++slot) {
    if (At(slot).iSocket == 0) continue;
    At(slot) = Slot();
    FreeSlots.Add(slot);
  }
}

std::int32_t SocketSlots::FirstFreeSlot() {
  FreeSlots.MoveFirst();
  while (FreeSlots.CurrIndex() != 0) {
    const std::int32_t slot = NumberIn(FreeSlots.Item());
    if (At(slot).iSocket == 0) return slot;
    FreeSlots.Remove();  // a repeated number whose slot is in use
  }
  return 0;
}

/// Takes the slot out of QueuedSockets and ProcessQueue; its connection's chain is the caller's.
void SocketSlots::FreeSlot(std::int32_t slot) {
  const Slot freed = std::exchange(At(slot), Slot());
  if (freed.lQueuedEntry != 0) QueuedSockets.Remove(freed.lQueuedEntry);
  if (freed.lProcessEntry != 0) {
    ProcessQueue.Remove(freed.lProcessEntry);
    --ConnectionOf(freed.iSocket).lWaiting;
  }
  FreeSlots.Add(slot);
}

bool SocketSlots::FreeQueued(std::int16_t socket) {
  if (Known(socket).lFirstQueued == 0) return false;
  std::int32_t slot = std::exchange(ConnectionOf(socket).lFirstQueued, 0);
  while (slot != 0) {
    const std::int32_t next = At(slot).lNextSlot;
    FreeSlot(slot);
    slot = next;
  }
  return true;
}

void SocketSlots::FreeReceiving(std::int16_t socket) {
  const std::int32_t slot = ReceivingSlot(socket);
  if (slot == 0) return;
  ReceivingSockets.Remove(std::exchange(ConnectionOf(socket).lReceivingEntry, 0));
  FreeSlot(slot);
}

}  // namespace ostrel
