// A thread in a single-threaded apartment of its own, with one automation object in it: another
// program's, which may be slow, dead or stuck in its calls. Its user waits for a call in a wait
// that dispatches events; a call made from the user's own apartment would hold its timers and
// sockets up.
#pragma once

#include <functional>
#include <memory>

#include "platform/win32/AutomationObject.h"

namespace ostrel {

class AutomationThread {
 public:
  /// Runs on the thread; may create or replace the object. Owns everything that it uses: it may
  /// come back long after its user is gone.
  using Work = std::function<platform::Outcome(platform::AutomationObject&)>;

  /// Raises std::system_error.
  AutomationThread();
  /// Releases the object. A thread that is stuck is left behind after 2 seconds, at once when it
  /// was given up.
  ~AutomationThread();
  AutomationThread(const AutomationThread&) = delete;
  AutomationThread& operator=(const AutomationThread&) = delete;

  /// Returns the outcome of the work; Hresult::kGivenUp when it was given up. Events are dispatched
  /// meanwhile: one may ask for more work, which then runs after this. When the loop is to quit,
  /// the work has 5 seconds to end.
  platform::Outcome Do(Work work);
  /// Ends every wait in Do. Nothing runs on the thread from then on but what is stuck there.
  /// Harmless when nobody waits.
  void GiveUp();

 private:
  struct Call;
  class Desk;

  bool Await(const Call& call);
  void Abandon();

  std::shared_ptr<Desk> oDesk;  // shared with the thread
  int iWaiting = 0;
  bool bGivenUp = false;
};

}  // namespace ostrel
