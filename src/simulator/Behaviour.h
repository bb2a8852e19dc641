// What a company file asks of the stand-in to try a client out: delays and failures, an operation
// of the request processor each.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "simulator/Element.h"

namespace ostrel::simulator {

struct Conduct {
  std::chrono::milliseconds delay{0};
  std::uint32_t error = 0;  // HRESULT; 0: the operation does its work
};

struct Behaviour {
  Conduct openConnection;
  Conduct beginSession;
  Conduct processRequest;
  Conduct companyFileName;
  /// processRequestDies="1": QuickBooks ends in the middle of a request, after its delay.
  bool processRequestDies = false;
};

/// From attributes such as processRequestSeconds="2.5" (at most 3600) and
/// processRequestError="0x80040408"; empty ones ask for nothing. Nothing when one cannot be read.
std::optional<Behaviour> ReadBehaviour(const Element& element);

}  // namespace ostrel::simulator
