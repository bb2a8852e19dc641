#include "bench/Figures.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

namespace ostrel::bench {

void Figures::AtLeast(std::string_view what, double measured, double target,
                      std::string_view unit) {
  Print(what, measured, ">=", target, unit, measured >= target);
}

void Figures::AtMost(std::string_view what, double measured, double target, std::string_view unit) {
  Print(what, measured, "<=", target, unit, measured <= target);
}

void Figures::Print(std::string_view what, double measured, std::string_view relation,
                    double target, std::string_view unit, bool ok) {
  std::printf("%-62s %9.2f   %s %7.1f %-8s %s\n", std::string(what).c_str(), measured,
              std::string(relation).c_str(), target, std::string(unit).c_str(),
              ok ? "ok" : "MISSED");
  std::fflush(stdout);
  bMissed = bMissed || !ok;
}

Seconds Median(std::vector<Seconds> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

Seconds Percentile(std::vector<Seconds> values, std::size_t percent) {
  std::sort(values.begin(), values.end());
  return values[(values.size() - 1) * percent / 100];
}

int ExitCodeOf(const char* program, void (*measure)(Figures& figures)) {
  try {
    Figures figures;
    measure(figures);
    return figures.ExitCode();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program, error.what());
    return 2;
  }
}

}  // namespace ostrel::bench
