#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "platform/FileSystem.h"
#include "simulator/CompanyStorage.h"
#include "simulator/SimulatedRequestProcessor.h"

namespace ostrel {

std::unique_ptr<platform::RequestProcessor> MakeSimulatedRequestProcessor() {
  static simulator::CompanyFiles files;
  static simulator::QuickBooks quickBooks(
      {.storage = files,
       .clock = platform::SystemClock(),
       .delay = platform::DoEventsFor,
       .usersCompany = platform::ProgramFolder() + u"\\sample.qbw"});
  return std::make_unique<SimulatedRequestProcessor>(quickBooks);
}

}  // namespace ostrel
