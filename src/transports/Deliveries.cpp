#include "transports/Deliveries.h"

#include <algorithm>

namespace ostrel {

void Deliveries::Queued(const ClientConnections& connections, std::int16_t socket, Time now) {
  if (connections.BytesToSend(socket) == 0) return;
  oPending.try_emplace(socket, Delivery{connections.BytesSent(socket), now});
}

void Deliveries::Look(const ClientConnections& connections, Time now) {
  std::erase_if(oPending, [&](const auto& one) { return connections.BytesToSend(one.first) == 0; });
  for (auto& [socket, delivery] : oPending) {
    const std::uint64_t taken = connections.BytesSent(socket);
    if (taken != delivery.lTaken) delivery = {taken, now};
  }
}

Deliveries::Time Deliveries::LastProgress() const {
  Time last;
  for (const auto& [socket, delivery] : oPending) last = std::max(last, delivery.tProgress);
  return last;
}

std::vector<std::int16_t> Deliveries::IdleSince(Time time) const {
  std::vector<std::int16_t> idle;
  for (const auto& [socket, delivery] : oPending) {
    if (delivery.tProgress <= time) idle.push_back(socket);
  }
  return idle;
}

}  // namespace ostrel
