#include "gateway/Guarded.h"

#include <exception>
#include <new>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

Text DescribeException() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return u"Out of memory";
  } catch (const RunTimeError& error) {
    return error.Description;
  } catch (const std::exception& error) {
    return FromUtf8(error.what());
  } catch (...) {
    return u"Unknown error";
  }
}

}  // namespace

void TellException(Trace& trace, TextView name) noexcept {
  try {
    trace.AddStatus(Text(name).append(u": ").append(DescribeException()));
  } catch (...) {  // NOLINT(bugprone-empty-catch): no memory even for the line; it is left out
  }
}

}  // namespace ostrel
