#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "platform/FileSystem.h"
#include "simulator/SimulatedRequestProcessor.h"
#include "simulator/company/CompanyStorage.h"

namespace ostrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::function<void()>& Death() {
  static std::function<void()> die = [] {};
  return die;
}

std::function<void()>& Dispatching() {
  static std::function<void()> dispatch = platform::DoEvents;
  return dispatch;
}

// The delay passes in steps, since the loop does not look at the flag that ends it. A step that
// ends early means that the loop was told to quit.
void Delay(milliseconds time, const bool& over) {
  constexpr milliseconds longest(50);
  const auto end = steady_clock::now() + time;
  for (auto now = steady_clock::now(); now < end && !over;) {
    const auto step = std::min(std::chrono::ceil<milliseconds>(end - now), longest);
    platform::DoEventsFor(step);
    const auto begun = std::exchange(now, steady_clock::now());
    if (now - begun < step) return;
  }
}

}  // namespace

void SetSimulatedDeath(std::function<void()> die) { Death() = std::move(die); }

void SetSimulatedDispatching(std::function<void()> dispatch) {
  Dispatching() = std::move(dispatch);
}

std::unique_ptr<RequestProcessor> MakeSimulatedRequestProcessor() {
  static simulator::CompanyFiles files;
  static simulator::QuickBooks quickBooks(
      {.storage = files,
       .clock = platform::SystemClock(),
       .delay = Delay,
       .dispatch = [] { Dispatching()(); },
       .die = [] { Death()(); },
       .usersCompany = platform::ProgramFolder() + u"\\sample.qbw"});
  return std::make_unique<SimulatedRequestProcessor>(quickBooks);
}

}  // namespace ostrel
