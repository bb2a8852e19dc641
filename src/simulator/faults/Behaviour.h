// The Behaviour element of a company file: how each operation of the request processor behaves at
// every call, and the faults that strike only some calls.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/faults/Faults.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

struct Behaviour {
  Conduct openConnection;
  Conduct beginSession;
  Conduct processRequest;
  Conduct companyFileName;
  /// processRequestDies="1": QuickBooks ends in the middle of a request, after its delay.
  bool processRequestDies = false;
  std::vector<Fault> faults;
};

/// The conduct of every call of an operation, by its name: "beginSession".
Conduct ConductOf(const Behaviour& behaviour, std::string_view operation);

struct BehaviourSlip {
  std::string why;
  const Element* culprit = nullptr;  // the element itself, or a child
};

/// Reads the behaviour from attributes such as processRequestSeconds="2.5" (at most 3600) and
/// processRequestError="0x80040408"; empty ones ask for nothing. Nothing when one, or a Fault
/// within it, cannot be read; `slip` then says why.
std::optional<Behaviour> ReadBehaviour(const Element& element, BehaviourSlip& slip);

}  // namespace ostrel::simulator
