// A run-time error as the program's classes raise it, and the pending error that an
// operation of the socket library leaves behind instead of raising. Their numbers are in
// util/Wire.h.
#pragma once

#include <exception>
#include <utility>

#include "util/Text.h"
#include "util/Wire.h"

namespace ostrel {

/// Raised by the file class's profile operations, the linked list and the socket classes.
class RunTimeError : public std::exception {
 public:
  explicit RunTimeError(int number, Text source = {}, Text description = {})
      : Number(number), Source(std::move(source)), Description(std::move(description)) {}
  const char* what() const noexcept override { return "run-time error"; }

  int Number;
  Text Source;
  Text Description;
};

/// Any exception as a run-time error: std::bad_alloc is error 7, what is no run-time error is 51,
/// both with the given source. Raises std::bad_alloc without memory for the texts.
RunTimeError AsRunTimeError(const std::exception_ptr& exception, TextView source);

/// The pending error of the socket library: one record for the process. Such an operation clears
/// it when it starts and records in it what it did not raise. Number 0: no error is pending.
struct PendingError {
  int Number = 0;
  Text Source;
  Text Description;

  void Clear() { *this = {}; }
  void Set(int number, Text source, Text description) {
    *this = {number, std::move(source), std::move(description)};
  }
  /// Sets what AsRunTimeError makes of the exception; error 7 without texts when there is no memory
  /// for them.
  void SetFrom(const std::exception_ptr& exception, TextView source) noexcept;
};

inline PendingError Err;

}  // namespace ostrel
