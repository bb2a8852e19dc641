// Where the socket transport keeps the requests of its connections: one slot a request, from its
// first piece until its connection is closed. Slots are numbered from 1; a connection is known by
// the socket server's index, from 1. A connection that sends several requests has several slots.
//
// The work for one connection does not grow with the requests of the others: each connection knows
// its slots, and each slot its entries in the lists.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "transports/RequestText.h"
#include "util/LinkedList.h"

namespace ostrel {

class SocketSlots {
 public:
  struct Slot {
    std::int16_t iSocket = 0;  // 0: the slot is free
    RequestText sRequest;      // what has arrived of the request
    // Indices of this slot's entries in QueuedSockets and ProcessQueue; 0: it has none.
    std::int32_t lQueuedEntry = 0;
    std::int32_t lProcessEntry = 0;
    std::int32_t lNextSlot = 0;  // of the same connection, in QueuedSockets
  };
  struct Request {
    std::int16_t iSocket;
    RequestText sRequest;
  };

  /// Slot of the connection's incomplete request; 0 when there is none.
  std::int32_t ReceivingSlot(std::int16_t socket) const;
  /// Gives the connection a slot for a new request. 0 when no known slot is free.
  std::int32_t StartReceiving(std::int16_t socket);

  /// Whether slot numbers are left for another Grow.
  bool CanGrow() const;
  /// Highest slot number after the next Grow.
  std::int32_t SizeAfterGrowth() const;
  /// Makes ten more slots (eleven at first). Kept: each later growth puts the previous highest
  /// number into FreeSlots once more, for the list can be seen; StartReceiving passes over a number
  /// in use.
  void Grow();
  /// Frees the slots of served requests whose connections are still open. False when there are
  /// none.
  bool FreeServed();

  Slot& At(std::int32_t slot) { return SocketStorage[static_cast<std::size_t>(slot) - 1]; }
  /// The connection's incomplete request is complete: it goes to the end of ProcessQueue.
  void Queue(std::int16_t socket, std::int32_t slot);
  /// Takes the oldest complete request from ProcessQueue, its text moved out of its slot.
  std::optional<Request> TakeOldest();

  /// The connection's requests in ProcessQueue.
  std::int32_t Waiting(std::int16_t socket) const { return Known(socket).lWaiting; }
  /// The connection with the most requests in ProcessQueue; 0 when that is empty.
  std::int16_t Busiest() const;

  /// The client closed the connection. Kept: a connection with only an incomplete request keeps
  /// slot and entry in ReceivingSockets, for the list can be seen. It does not keep the text: the
  /// next connection of this index must not inherit it.
  void ForgetClosed(std::int16_t socket);
  /// Frees all the connection's slots, and its requests leave ProcessQueue.
  void ForgetConnection(std::int16_t socket);
  /// As ForgetConnection, for every connection there is.
  void ForgetAll();

  std::vector<Slot> SocketStorage;  // element 0 is slot 1
  std::int16_t iStorageSize = 0;    // highest slot number made so far
  LinkedList FreeSlots;             // slot numbers not in use
  LinkedList ReceivingSockets;      // socket index -> slot of the incomplete request
  LinkedList QueuedSockets;         // socket index -> slot of a complete request, served or not
  LinkedList ProcessQueue;          // slot numbers of complete requests, oldest first

 private:
  struct Connection {
    std::int32_t lReceivingEntry = 0;  // in ReceivingSockets; 0: none
    std::int32_t lFirstQueued = 0;     // slot; the others follow by lNextSlot
    std::int32_t lWaiting = 0;
  };

  const Connection& Known(std::int16_t socket) const;
  Connection& ConnectionOf(std::int16_t socket);
  std::int32_t FirstFreeSlot();
  void FreeSlot(std::int32_t slot);
  bool FreeServedOf(Connection& connection);
  bool FreeQueued(std::int16_t socket);
  void FreeReceiving(std::int16_t socket);

  std::vector<Connection> oConnections;  // by socket index
};

}  // namespace ostrel
