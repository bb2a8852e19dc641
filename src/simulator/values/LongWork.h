// Lets everything else have its turn while a request is computed: events are dispatched now and
// then, so that the request can be given up. A change is collected under this;
// it is made safe and carried out outside, so that it is whole or not there at all.
#pragma once

#include <functional>

namespace ostrel::simulator {

/// For a step of long work, however small. Within a LongWork: lets events be dispatched when they
/// have waited for a while, and raises RequestProcessorError (Hresult::kGivenUp) once the work has
/// been given up. Elsewhere: nothing.
void Breathe();

/// The same for a step of less than a microsecond, such as a look at one object of a list, beside
/// which Breathe would take noticeable time.
void BreatheLightly();

/// Raises kCallRejected inside long work, whose data must not change meanwhile.
void RequireNoLongWork();

/// Work that lasts as long as this lives. All of it is on one thread.
class LongWork {
 public:
  /// `dispatch` handles the events that wait; one of them may make `givenUp` true. Long work does
  /// not begin inside other long work.
  LongWork(const std::function<void()>& dispatch, const bool& givenUp);
  ~LongWork();
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

  /// The step that the free function Breathe takes within this work.
  void Breathe();

 private:
  const std::function<void()>& fDispatch;
  const bool& bGivenUp;
};

}  // namespace ostrel::simulator
