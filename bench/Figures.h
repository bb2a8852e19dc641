// The figures of one run, each a line of the table: what, measured, target, verdict.
#pragma once

#include <chrono>
#include <string_view>
#include <vector>

namespace ostrel::bench {

using Seconds = std::chrono::duration<double>;
using BenchClock = std::chrono::steady_clock;

class Figures {
 public:
  /// These print the line at once.
  void AtLeast(std::string_view what, double measured, double target, std::string_view unit);
  void AtMost(std::string_view what, double measured, double target, std::string_view unit);

  /// 1 when a target was missed.
  int ExitCode() const { return bMissed ? 1 : 0; }

 private:
  void Print(std::string_view what, double measured, std::string_view relation, double target,
             std::string_view unit, bool ok);

  bool bMissed = false;
};

/// Takes the measurements of a program, for its main: 1 when a target was missed, 2 when a figure
/// could not be taken, which it says on standard error.
int ExitCodeOf(const char* program, void (*measure)(Figures& figures));

/// The upper one of an even number of values, of which there must be one.
Seconds Median(std::vector<Seconds> values);

/// The value that `percent` of 100 do not exceed.
Seconds Percentile(std::vector<Seconds> values, std::size_t percent);

/// The time that the step takes.
template <typename Step>
Seconds TimeOf(Step step) {
  const auto start = BenchClock::now();
  step();
  return BenchClock::now() - start;
}

}  // namespace ostrel::bench
