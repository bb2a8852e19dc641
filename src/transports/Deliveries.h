// The connections to which queued data is still going out, and since when each has taken nothing.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <vector>

#include "transports/SocketService.h"

namespace ostrel {

class Deliveries {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Something has been queued for the connection.
  void Queued(const SocketService& server, std::int16_t socket, Time now);
  void Forget(std::int16_t socket) { oPending.erase(socket); }
  void ForgetAll() { oPending.clear(); }

  /// Finds out who has taken something since, and forgets who has taken everything.
  void Look(const SocketService& server, Time now);
  bool AllDone() const { return oPending.empty(); }
  /// When a look last found that a connection had taken something, or a new one was queued for;
  /// the clock's beginning when there is none.
  Time LastProgress() const;
  /// The connections that have taken nothing since that time.
  std::vector<std::int16_t> IdleSince(Time time) const;

 private:
  struct Delivery {
    std::uint64_t lTaken;
    Time tProgress;
  };

  std::map<std::int16_t, Delivery> oPending;
};

}  // namespace ostrel
