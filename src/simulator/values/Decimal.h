// A number of money, goods or percents, exact to five decimals: what qbXML's amounts, prices,
// quantities and percents are computed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel::simulator {

/// Sums that leave the range stay at its end, which is no amount (IsAmount).
class Decimal {
 public:
  constexpr Decimal() = default;
  static constexpr Decimal Whole(std::int32_t number) { return Decimal(number * kScale); }
  /// Reads "-12.5"; nothing when it has another form or more than ten digits before the point.
  /// Digits after the fifth decimal are rounded away.
  static std::optional<Decimal> Parse(std::string_view text);
  /// Reads the number as Parse does; zero for a text of another form.
  static Decimal Of(std::string_view text) { return Parse(text).value_or(Decimal()); }

  /// Whether Parse would read it again.
  bool IsAmount() const { return lUnits > -kLimit && lUnits < kLimit; }
  bool IsZero() const { return lUnits == 0; }
  Decimal Negated() const { return Decimal(-lUnits); }
  /// Rounded to cents, halves away from zero.
  Decimal Cents() const;

  Decimal operator+(Decimal other) const;
  Decimal operator-(Decimal other) const { return *this + other.Negated(); }
  Decimal operator*(Decimal other) const;
  /// Zero when the divisor is.
  Decimal operator/(Decimal divisor) const;
  Decimal& operator+=(Decimal other) { return *this = *this + other; }
  bool operator==(const Decimal&) const = default;
  bool operator<(Decimal other) const { return lUnits < other.lUnits; }
  bool operator>(Decimal other) const { return lUnits > other.lUnits; }
  bool operator<=(Decimal other) const { return lUnits <= other.lUnits; }

  /// "12.50": with this many decimals (0 to 5) or, when they are needed, more.
  std::string ToString(int decimals) const;

 private:
  static constexpr std::int64_t kScale = 100'000;
  static constexpr std::int64_t kLimit = 10'000'000'000 * kScale;
  static constexpr std::int64_t kEnd = INT64_MAX;

  explicit constexpr Decimal(std::int64_t units) : lUnits(units) {}

  std::int64_t lUnits = 0;  // never INT64_MIN
};

}  // namespace ostrel::simulator
