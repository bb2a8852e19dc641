// The user and the thread share a desk: the user puts calls on it, the thread takes them one after
// the other and raises each call's signal when its outcome is written. Both keep the desk alive, so
// that a thread which is stuck in QuickBooks can be left behind and may come back at any time
// later; it then finds the desk closed and ends. The thread dispatches messages while it waits,
// because COM sends calls to it as messages.
#include "quickbooks/win32/AutomationThread.h"

#include <chrono>
#include <deque>
#include <mutex>
#include <new>
#include <thread>

#include "platform/win32/MessageLoop.h"
#include "platform/win32/Signal.h"
#include "quickbooks/ErrorNumbers.h"
#include "quickbooks/RequestProcessor.h"
#include "quickbooks/win32/BusyServerFilter.h"

namespace ostrel {
namespace {

using platform::Outcome;

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kTimeToQuit(5000);
constexpr milliseconds kTimeToRelease(2000);

void DispatchMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

Outcome Carried(const AutomationThread::Work& work, platform::AutomationObject& object) noexcept {
  try {
    return work(object);
  } catch (const std::bad_alloc&) {
    return {E_OUTOFMEMORY};
  } catch (...) {
    return {E_UNEXPECTED};
  }
}

}  // namespace

/// The thread writes the outcome, then raises the signal; the user reads it only after that.
struct AutomationThread::Call {
  explicit Call(Work theWork) : work(std::move(theWork)) {}

  Work work;
  Outcome outcome;
  platform::Signal finished;
};

/// Where the user puts calls and the thread takes them.
class AutomationThread::Desk {
 public:
  void Put(std::shared_ptr<Call> call) {
    const std::lock_guard lock(oMutex);
    oCalls.push_back(std::move(call));
    oChanged.Raise();
  }

  /// Drops the calls that wait; the thread takes no more.
  void Close() {
    const std::lock_guard lock(oMutex);
    bClosed = true;
    oCalls.clear();
    oChanged.Raise();
  }

  static void Serve(const std::shared_ptr<Desk>& desk) noexcept;

  platform::Signal oEnded;

 private:
  std::shared_ptr<Call> Next();
  bool Take(std::shared_ptr<Call>& call);

  std::mutex oMutex;
  std::deque<std::shared_ptr<Call>> oCalls;
  bool bClosed = false;
  platform::Signal oChanged;
};

// The thread's routine.
void AutomationThread::Desk::Serve(const std::shared_ptr<Desk>& desk) noexcept {
  {
    const platform::Apartment apartment;
    const BusyServerFilter filter;
    platform::AutomationObject object;
    while (const std::shared_ptr<Call> call = desk->Next()) {
      call->outcome = Carried(call->work, object);
      call->finished.Raise();
    }
  }
  desk->oEnded.Raise();
}

/// Null when the desk is closed.
std::shared_ptr<AutomationThread::Call> AutomationThread::Desk::Next() {
  const HANDLE changed = oChanged.Get();
  std::shared_ptr<Call> call;
  while (!Take(call)) {
    MsgWaitForMultipleObjectsEx(1, &changed, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    DispatchMessages();
  }
  return call;
}

bool AutomationThread::Desk::Take(std::shared_ptr<Call>& call) {
  const std::lock_guard lock(oMutex);
  oChanged.Lower();
  if (bClosed) return true;
  if (oCalls.empty()) return false;
  call = std::move(oCalls.front());
  oCalls.pop_front();
  return true;
}

AutomationThread::AutomationThread() : oDesk(std::make_shared<Desk>()) {
  std::thread([desk = oDesk] { Desk::Serve(desk); }).detach();
}

AutomationThread::~AutomationThread() {
  oDesk->Close();
  if (!bGivenUp) oDesk->oEnded.Await(kTimeToRelease);
}

Outcome AutomationThread::Do(Work work) {
  if (bGivenUp) return {Raw(Hresult::kGivenUp)};
  const auto call = std::make_shared<Call>(std::move(work));
  oDesk->Put(call);
  if (!Await(*call)) return {Raw(Hresult::kGivenUp)};
  return std::move(call->outcome);
}

bool AutomationThread::Await(const Call& call) {
  ++iWaiting;
  bool finished = platform::DoEventsUntilSignalled(
      call.finished.Get(), steady_clock::time_point::max(), [this] { return bGivenUp; });
  --iWaiting;
  if (!finished && !bGivenUp) finished = call.finished.Await(kTimeToQuit);
  if (!finished) Abandon();
  return finished;
}

void AutomationThread::GiveUp() {
  if (iWaiting > 0) Abandon();
}

void AutomationThread::Abandon() {
  bGivenUp = true;
  oDesk->Close();
}

}  // namespace ostrel
