#include "transports/Deliveries.h"

#include <algorithm>

namespace ostrel {

void Deliveries::Queued(const SocketService& server, std::int16_t socket, Time now) {
  if (server.BytesToSend(socket) == 0) return;
  oPending.try_emplace(socket, Delivery{server.BytesSent(socket), now});
}

void Deliveries::Look(const SocketService& server, Time now) {
  std::erase_if(oPending, [&](const auto& one) { return server.BytesToSend(one.first) == 0; });
  for (auto& [socket, delivery] : oPending) {
    const std::uint64_t taken = server.BytesSent(socket);
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
