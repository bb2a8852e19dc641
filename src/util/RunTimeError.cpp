#include "util/RunTimeError.h"

#include <new>

namespace ostrel {

RunTimeError AsRunTimeError(const std::exception_ptr& exception, TextView source) {
  try {
    std::rethrow_exception(exception);
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RunTimeError(ErrorNumber::kOutOfMemory, Text(source), u"Out of memory");
  } catch (...) {
    return RunTimeError(ErrorNumber::kInternalError, Text(source), u"Internal error");
  }
}

void PendingError::SetFrom(const std::exception_ptr& exception, TextView source) noexcept {
  try {
    const RunTimeError error = AsRunTimeError(exception, source);
    Set(error.Number, error.Source, error.Description);
  } catch (...) {  // no memory for the texts
    Number = ErrorNumber::kOutOfMemory;
    Source.clear();
    Description.clear();
  }
}

}  // namespace ostrel
