#include "tests/contract/quickbooks/Implementations.h"

#include "quickbooks/RequestProcessor.h"
#include "simulator/SimulatedRequestProcessor.h"
#include "tests/contract/quickbooks/win32/StandInServer.h"

namespace ostrel {
namespace {

std::unique_ptr<RequestProcessor> MakeThroughCom() {
  // One that still runs may be left over from a client that has died, or from an older build.
  static const bool ready = RunStandIn(u"/stop") == 0 && RunStandIn(u"/regserver") == 0;
  if (!ready) throw RequestProcessorError(-1, u"the stand-in does not register");
  auto processor = MakeInstalledRequestProcessor();
  processor->Create();
  return processor;
}

}  // namespace

std::vector<Implementation> Implementations() {
  return {{"StandIn", MakeSimulatedRequestProcessor}, {"ThroughCom", MakeThroughCom}};
}

}  // namespace ostrel
