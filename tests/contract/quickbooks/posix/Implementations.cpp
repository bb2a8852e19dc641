#include "tests/contract/quickbooks/Implementations.h"

#include "simulator/SimulatedRequestProcessor.h"

namespace ostrel {

std::vector<Implementation> Implementations() {
  return {{"StandIn", MakeSimulatedRequestProcessor}};
}

}  // namespace ostrel
