#include <gtest/gtest.h>

#include "transports/SocketSlots.h"

namespace ostrel {
namespace {

std::vector<std::int32_t> Numbers(LinkedList list) {
  std::vector<std::int32_t> numbers;
  for (list.MoveFirst(); list.CurrIndex() != 0; list.MoveNext()) {
    numbers.push_back(std::get<std::int32_t>(list.Item()));
  }
  return numbers;
}

using Slots = std::vector<std::int32_t>;

// A complete request of the connection, waiting to be served.
std::int32_t QueueRequest(SocketSlots& slots, std::int16_t socket, TextView request = u"request") {
  const std::int32_t slot = slots.StartReceiving(socket);
  slots.At(slot).sRequest.Append(request);
  slots.Queue(socket, slot);
  return slot;
}

SocketSlots GrownSlots() {
  SocketSlots slots;
  slots.Grow();
  return slots;
}

TEST(SocketSlots, HasNoSlotsAtFirst) {
  SocketSlots slots;

  EXPECT_EQ(slots.StartReceiving(1), 0);

  EXPECT_EQ(slots.iStorageSize, 0);
}

TEST(SocketSlots, MakesElevenSlotsAtFirst) {
  SocketSlots slots;

  slots.Grow();

  EXPECT_EQ(slots.iStorageSize, 11);
  EXPECT_EQ(slots.SocketStorage.size(), 11u);
  EXPECT_EQ(Numbers(slots.FreeSlots), (Slots{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST(SocketSlots, AddsThePreviousHighestNumberOnceMoreWithEachLaterGrowth) {
  // Kept: every later growth repeats one number.
  SocketSlots slots = GrownSlots();
  slots.FreeSlots = {};

  slots.Grow();

  EXPECT_EQ(slots.iStorageSize, 21);
  EXPECT_EQ(Numbers(slots.FreeSlots), (Slots{11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}));
}

TEST(SocketSlots, NeverGivesARepeatedNumberToTwoConnections) {
  SocketSlots slots = GrownSlots();
  for (std::int16_t socket = 1; socket <= 11; ++socket) slots.StartReceiving(socket);
  slots.Grow();

  const std::int32_t twelfth = slots.StartReceiving(12);

  EXPECT_EQ(twelfth, 12);
  EXPECT_EQ(slots.At(11).iSocket, 11);
  EXPECT_EQ(slots.At(12).iSocket, 12);
}

TEST(SocketSlots, KeepsTheContentsWhenItGrows) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 1, u"first");

  slots.Grow();

  EXPECT_EQ(slots.At(1).sRequest.Take(), u"first");
}

TEST(SocketSlots, DoesNotGrowPastASixteenBitNumber) {
  SocketSlots slots;

  while (slots.CanGrow()) slots.Grow();

  EXPECT_EQ(slots.iStorageSize, 32761);
  EXPECT_EQ(slots.SocketStorage.size(), 32761u);
}

TEST(SocketSlots, HandsOutTheOldestRequestFirst) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 2, u"older");
  QueueRequest(slots, 1, u"newer");

  auto first = slots.TakeOldest();
  auto second = slots.TakeOldest();

  EXPECT_EQ(first->iSocket, 2);
  EXPECT_EQ(first->sRequest.Take(), u"older");
  EXPECT_EQ(second->sRequest.Take(), u"newer");
  EXPECT_FALSE(slots.TakeOldest());
}

TEST(SocketSlots, MovesTheTextOutButKeepsTheSlotOfARequestBeingServed) {
  SocketSlots slots = GrownSlots();
  const std::int32_t slot = QueueRequest(slots, 3);

  slots.TakeOldest();

  EXPECT_EQ(slots.At(slot).sRequest.Length(), 0u);
  EXPECT_EQ(slots.At(slot).iSocket, 3);
  EXPECT_EQ(slots.QueuedSockets.Count(), 1);
}

TEST(SocketSlots, FreesEverySlotOfAClosedConnection) {
  SocketSlots slots = GrownSlots();
  const std::int32_t served = QueueRequest(slots, 1);
  slots.TakeOldest();
  const std::int32_t waiting = QueueRequest(slots, 1);
  const std::int32_t incomplete = slots.StartReceiving(1);

  slots.ForgetClosed(1);

  for (const std::int32_t slot : {served, waiting, incomplete}) {
    EXPECT_EQ(slots.At(slot).iSocket, 0) << slot;
    EXPECT_EQ(slots.At(slot).sRequest.Length(), 0u) << slot;
  }
  EXPECT_EQ(slots.FreeSlots.Count(), 11);
  EXPECT_TRUE(slots.QueuedSockets.IsEmpty());
  EXPECT_TRUE(slots.ProcessQueue.IsEmpty());
  EXPECT_TRUE(slots.ReceivingSockets.IsEmpty());
}

TEST(SocketSlots, LeavesTheRequestsOfOtherConnectionsAlone) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 1, u"one");
  QueueRequest(slots, 2, u"two");
  QueueRequest(slots, 1, u"three");

  slots.ForgetClosed(1);

  EXPECT_EQ(slots.TakeOldest()->sRequest.Take(), u"two");
  EXPECT_FALSE(slots.TakeOldest());
}

TEST(SocketSlots, KeepsSlotAndEntryOfAConnectionThatClosesInTheMiddleOfItsRequest) {
  // Kept: such a slot is not given back; the next connection of this index goes on in it.
  SocketSlots slots = GrownSlots();
  const std::int32_t slot = slots.StartReceiving(1);

  slots.ForgetClosed(1);

  EXPECT_EQ(slots.ReceivingSlot(1), slot);
  EXPECT_EQ(slots.At(slot).iSocket, 1);
  EXPECT_EQ(slots.FreeSlots.Count(), 10);
}

TEST(SocketSlots, DropsTheTextOfAConnectionThatClosesInTheMiddleOfItsRequest) {
  SocketSlots slots = GrownSlots();
  const std::int32_t slot = slots.StartReceiving(1);
  slots.At(slot).sRequest.Append(u"half");

  slots.ForgetClosed(1);

  EXPECT_EQ(slots.At(slot).sRequest.Length(), 0u);
}

TEST(SocketSlots, FreesAnIncompleteRequestWhenTheConnectionIsForgotten) {
  SocketSlots slots = GrownSlots();
  const std::int32_t slot = slots.StartReceiving(1);

  slots.ForgetConnection(1);

  EXPECT_EQ(slots.ReceivingSlot(1), 0);
  EXPECT_EQ(slots.At(slot).iSocket, 0);
  EXPECT_EQ(slots.FreeSlots.Count(), 11);
}

TEST(SocketSlots, FreesServedSlotsOfOpenConnectionsOnly) {
  SocketSlots slots = GrownSlots();
  const std::int32_t served = QueueRequest(slots, 1);
  slots.TakeOldest();
  const std::int32_t waiting = QueueRequest(slots, 1, u"waits");

  EXPECT_TRUE(slots.FreeServed());

  EXPECT_EQ(slots.At(served).iSocket, 0);
  EXPECT_EQ(slots.At(waiting).iSocket, 1);
  EXPECT_EQ(slots.TakeOldest()->sRequest.Take(), u"waits");
}

TEST(SocketSlots, TellsWhenNothingIsServed) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 1);

  EXPECT_FALSE(slots.FreeServed());
}

TEST(SocketSlots, KeepsTheQueuedEntriesOfOthersWhenAConnectionCloses) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 1);
  const std::int32_t served = QueueRequest(slots, 2);
  slots.TakeOldest();
  slots.TakeOldest();
  const std::int32_t waiting = QueueRequest(slots, 2);

  slots.ForgetClosed(1);

  EXPECT_EQ(Numbers(slots.QueuedSockets), (Slots{2, 2}));
  EXPECT_EQ(slots.At(served).iSocket, 2);
  EXPECT_EQ(slots.At(waiting).iSocket, 2);
  slots.ForgetClosed(2);
  EXPECT_EQ(slots.FreeSlots.Count(), 11);
}

TEST(SocketSlots, CountsTheRequestsThatWait) {
  SocketSlots slots = GrownSlots();
  EXPECT_EQ(slots.Waiting(1), 0);
  EXPECT_EQ(slots.Busiest(), 0);
  QueueRequest(slots, 1);
  QueueRequest(slots, 2);
  QueueRequest(slots, 2);
  slots.StartReceiving(1);
  EXPECT_EQ(slots.Waiting(1), 1);
  EXPECT_EQ(slots.Waiting(2), 2);
  EXPECT_EQ(slots.Busiest(), 2);

  slots.TakeOldest();
  slots.ForgetConnection(2);

  EXPECT_EQ(slots.Waiting(1), 0);
  EXPECT_EQ(slots.Waiting(2), 0);
  EXPECT_EQ(slots.Busiest(), 0);
}

TEST(SocketSlots, FreesWhatIsLeftOfAConnectionAfterItsServedSlots) {
  SocketSlots slots = GrownSlots();
  for (int i = 0; i < 3; ++i) QueueRequest(slots, 1);
  slots.TakeOldest();
  slots.FreeServed();
  EXPECT_EQ(slots.QueuedSockets.Count(), 2);

  slots.ForgetClosed(1);

  EXPECT_EQ(slots.FreeSlots.Count(), 11);
  EXPECT_TRUE(slots.QueuedSockets.IsEmpty());
  EXPECT_TRUE(slots.ProcessQueue.IsEmpty());
}

TEST(SocketSlots, ForgetsTheLastSlotToo) {
  SocketSlots slots = GrownSlots();
  for (std::int16_t socket = 1; socket <= 11; ++socket) QueueRequest(slots, socket);

  slots.ForgetAll();

  EXPECT_EQ(slots.At(11).iSocket, 0);
  EXPECT_EQ(slots.FreeSlots.Count(), 11);
  EXPECT_EQ(slots.Waiting(11), 0);
  EXPECT_EQ(QueueRequest(slots, 11), 1);
}

TEST(SocketSlots, GivesTheNextRequestsOfAForgottenConnectionSlotsOfTheirOwn) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 1);
  slots.StartReceiving(1);
  slots.ForgetAll();

  EXPECT_EQ(slots.ReceivingSlot(1), 0);
  QueueRequest(slots, 1, u"anew");

  EXPECT_EQ(slots.TakeOldest()->sRequest.Take(), u"anew");
  slots.ForgetClosed(1);
  EXPECT_EQ(slots.FreeSlots.Count(), 11);
}

// A walk over the requests of all, for each piece and each close, would take minutes here.
TEST(SocketSlots, TakesNoLongerForTheRequestsOfOthers) {
  SocketSlots slots;
  while (slots.CanGrow()) slots.Grow();
  for (int i = 0; i < 30'000; ++i) QueueRequest(slots, 1, u"");

  for (int round = 0; round < 100'000; ++round) {
    QueueRequest(slots, 2, u"");
    slots.ForgetClosed(2);
  }

  EXPECT_EQ(slots.Waiting(1), 30'000);
}

TEST(SocketSlots, ForgetsEveryConnection) {
  SocketSlots slots = GrownSlots();
  QueueRequest(slots, 1);
  QueueRequest(slots, 2);
  slots.StartReceiving(3);

  slots.ForgetAll();

  EXPECT_EQ(slots.FreeSlots.Count(), 11);
  EXPECT_TRUE(slots.ProcessQueue.IsEmpty());
  EXPECT_TRUE(slots.QueuedSockets.IsEmpty());
  EXPECT_EQ(slots.ReceivingSlot(3), 0);
}

}  // namespace
}  // namespace ostrel
