#include "shell/Guarded.h"

#include <exception>
#include <new>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

void Tell(Trace& trace, TextView name, TextView what) noexcept {
  try {
    trace.AddStatus(Text(name).append(u": ").append(what));
  } catch (...) {
    // There is no memory even for the line: the program goes on without it.
  }
}

}  // namespace

void Guarded(Trace& trace, TextView name, const std::function<void()>& entry) noexcept {
  try {
    entry();
  } catch (const std::bad_alloc&) {
    Tell(trace, name, u"Out of memory");
  } catch (const RunTimeError& error) {
    Tell(trace, name, error.Description);
  } catch (const std::exception& error) {
    Tell(trace, name, FromUtf8(error.what()));
  } catch (...) {
    Tell(trace, name, u"Unknown error");
  }
}

}  // namespace ostrel
