// QuickBooks itself, as all request processors of a process see it: one company is open at a time,
// from the first session on it to the end of the last.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <random>

#include "platform/Clock.h"
#include "quickbooks/RequestProcessor.h"
#include "simulator/company/CompanyStorage.h"
#include "simulator/company/OpenCompany.h"

namespace ostrel::simulator {

/// The services that the stand-in takes from the system; tests put doubles here. All of it outlives
/// QuickBooks.
struct Surroundings {
  CompanyStorage& storage;
  const platform::Clock& clock;
  /// Lets time pass while events are dispatched; ends early when one of them makes `over` true.
  std::function<void(std::chrono::milliseconds, const bool& over)> delay;
  /// Handles the events that wait at this moment.
  std::function<void()> dispatch = [] {};
  /// Ends the process as a crash does, if it can.
  std::function<void()> die;
  /// The company that the user has open, which an empty file name opens.
  Text usersCompany;
};

class QuickBooks {
 public:
  explicit QuickBooks(Surroundings surroundings);

  /// Raises RequestProcessorError when the company cannot be opened. It closes with the
  /// last reference to it. An empty path: the open company, else the user's.
  /// Waits a moment for a company that another process has open and may just be closing; events
  /// are dispatched meanwhile.
  std::shared_ptr<OpenCompany> Open(TextView path, FileMode mode, const bool& givenUp);

  /// The conduct that the open company, else the user's, asks of OpenConnection, which names none.
  Conduct OpenConnectionConduct(const bool& givenUp);
  /// Waits, and fails or dies, as asked for; fails as soon as it is given up.
  void Perform(const Conduct& conduct, const bool& givenUp) const;
  /// Fails as an operation does in whose middle QuickBooks has ended.
  [[noreturn]] void Die() const;
  const std::function<void()>& Dispatch() const { return oSurroundings.dispatch; }
  Stamp Now() const { return MakeStamp(oSurroundings.clock); }
  /// "{3F2504E0-4F89-41D3-9A0C-0305E82C3301}", never the same twice.
  Text NewTicket();

 private:
  std::shared_ptr<OpenCompany> FindOpen(TextView path, FileMode mode) const;
  std::shared_ptr<OpenCompany> Load(TextView path, FileMode mode, CompanyHold hold);
  CompanyHold Lock(TextView path) const;

  Surroundings oSurroundings;
  std::weak_ptr<OpenCompany> oOpen;
  std::map<Text, std::shared_ptr<FaultCounts>> oCounts;  // of each company file used so far
  std::mt19937_64 oRandom;
};

}  // namespace ostrel::simulator
