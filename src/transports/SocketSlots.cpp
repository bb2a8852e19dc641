#include "transports/SocketSlots.h"

#include <limits>
#include <utility>

namespace ostrel {
namespace {

constexpr std::int32_t kGrowth = 10;

std::int32_t NumberIn(const LinkedList::Value& value) { return std::get<std::int32_t>(value); }

std::int32_t ItemAt(const LinkedList& list, std::int32_t index) {
  return NumberIn(list.Item(index));
}

std::int32_t SlotAt(const LinkedList& list, std::int32_t index) {
  return NumberIn(list.ExtraData(index));
}

void AddKeyed(LinkedList& list, std::int16_t socket, std::int32_t slot) {
  list.ExtraData(list.Add(std::int32_t{socket}), slot);
}

// One walk, whatever is removed on the way.
template <typename Condition>
void RemoveWhere(LinkedList& list, Condition condition) {
  list.MoveFirst();
  while (list.CurrIndex() != 0) {
    if (condition(list.CurrIndex())) {
      list.Remove();
    } else {
      list.MoveNext();
    }
  }
}

}  // namespace

std::int32_t SocketSlots::ReceivingSlot(std::int16_t socket) {
  const std::int32_t index = ReceivingSockets.Find(std::int32_t{socket});
  return index == 0 ? 0 : SlotAt(ReceivingSockets, index);
}

std::int32_t SocketSlots::StartReceiving(std::int16_t socket) {
  const std::int32_t slot = FirstFreeSlot();
  if (slot == 0) return 0;
  AddKeyed(ReceivingSockets, socket, slot);
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

bool SocketSlots::FreeAnswered() {
  std::vector<bool> waits(SocketStorage.size() + 1);
  for (ProcessQueue.MoveFirst(); ProcessQueue.CurrIndex() != 0; ProcessQueue.MoveNext()) {
    waits[static_cast<std::size_t>(NumberIn(ProcessQueue.Item()))] = true;
  }
  const std::int32_t before = QueuedSockets.Count();
  RemoveWhere(QueuedSockets, [&](std::int32_t index) {
    const std::int32_t slot = SlotAt(QueuedSockets, index);
    if (waits[static_cast<std::size_t>(slot)]) return false;
    FreeSlot(slot);
    return true;
  });
  return QueuedSockets.Count() < before;
}

void SocketSlots::Queue(std::int16_t socket, std::int32_t slot) {
  AddKeyed(QueuedSockets, socket, slot);
  ProcessQueue.Add(slot);
  ReceivingSockets.RemoveByKey(std::int32_t{socket});
}

std::optional<SocketSlots::Request> SocketSlots::TakeOldest() {
  if (ProcessQueue.IsEmpty()) return std::nullopt;
  ProcessQueue.MoveFirst();
  Slot& slot = At(NumberIn(ProcessQueue.Item()));
  ProcessQueue.Remove();
  return Request{slot.iSocket, std::exchange(slot.sRequest, {})};
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
  for (LinkedList* list : {&ProcessQueue, &QueuedSockets, &ReceivingSockets}) {
    RemoveWhere(*list, [](std::int32_t) { return true; });
  }
  for (std::int32_t slot = 1; slot <= iStorageSize; ++slot) {
    if (At(slot).iSocket != 0) FreeSlot(slot);
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

void SocketSlots::FreeSlot(std::int32_t slot) {
  At(slot) = Slot();
  FreeSlots.Add(slot);
}

bool SocketSlots::FreeQueued(std::int16_t socket) {
  RemoveWhere(ProcessQueue, [&](std::int32_t index) {
    return At(ItemAt(ProcessQueue, index)).iSocket == socket;
  });
  const std::int32_t before = QueuedSockets.Count();
  RemoveWhere(QueuedSockets, [&](std::int32_t index) {
    if (ItemAt(QueuedSockets, index) != socket) return false;
    FreeSlot(SlotAt(QueuedSockets, index));
    return true;
  });
  return QueuedSockets.Count() < before;
}

void SocketSlots::FreeReceiving(std::int16_t socket) {
  const std::int32_t slot = ReceivingSlot(socket);
  if (slot == 0) return;
  ReceivingSockets.Remove();
  FreeSlot(slot);
}

}  // namespace ostrel
