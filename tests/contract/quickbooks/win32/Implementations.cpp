#include "tests/contract/quickbooks/Implementations.h"

#include "platform/InstalledRequestProcessor.h"
#include "simulator/SimulatedRequestProcessor.h"
#include "tests/contract/quickbooks/win32/StandInServer.h"

namespace ostrel {
namespace {

std::unique_ptr<platform::RequestProcessor> MakeThroughCom() {
  static const bool registered = RunStandIn(u"/regserver") == 0;
  if (!registered) {
    throw platform::RequestProcessorError(-1, u"the stand-in does not register");
  }
  return platform::MakeInstalledRequestProcessor();
}

}  // namespace

std::vector<Implementation> Implementations() {
  return {{"StandIn", MakeSimulatedRequestProcessor}, {"ThroughCom", MakeThroughCom}};
}

}  // namespace ostrel
