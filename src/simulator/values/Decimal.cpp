#include "simulator/values/Decimal.h"

#include <algorithm>

namespace ostrel::simulator {
namespace {

constexpr std::size_t kDecimals = 5;
constexpr std::size_t kMaxWholeDigits = 10;

bool AreDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t DigitsAsNumber(std::string_view digits) {
  std::int64_t number = 0;
  for (const char digit : digits) number = 10 * number + (digit - '0');
  return number;
}

// The first five decimals, rounded by the sixth.
std::int64_t UnitsIn(std::string_view decimals) {
  std::string five(decimals.substr(0, kDecimals));
  five.resize(kDecimals, '0');
  const bool up = decimals.size() > kDecimals && decimals[kDecimals] >= '5';
  return DigitsAsNumber(five) + (up ? 1 : 0);
}

std::int64_t DivideRounding(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t half = divisor / 2;
  return (dividend < 0 ? dividend - half : dividend + half) / divisor;
}

}  // namespace

std::optional<Decimal> Decimal::Parse(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string_view whole = text.substr(0, point);
  const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
  if (whole.empty() && decimals.empty()) return std::nullopt;
  if (!AreDigits(whole) || !AreDigits(decimals)) return std::nullopt;
  whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
  if (whole.size() > kMaxWholeDigits) return std::nullopt;
  const std::int64_t units = DigitsAsNumber(whole) * kScale + UnitsIn(decimals);
  const Decimal number(negative ? -units : units);
  return number.IsAmount() ? std::optional(number) : std::nullopt;
}

Decimal Decimal::Cents() const {
  constexpr std::int64_t kCent = kScale / 100;
  if (!IsAmount()) return *this;
  return Decimal(DivideRounding(lUnits, kCent) * kCent);
}

Decimal Decimal::operator+(Decimal other) const {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(lUnits, other.lUnits, &sum)) return Decimal(lUnits < 0 ? -kEnd : kEnd);
  return Decimal(std::max(sum, -kEnd));
}

// Split at the point, so that no product of two amounts but the first can leave the range.
Decimal Decimal::operator*(Decimal other) const {
  const bool negative = (lUnits < 0) != (other.lUnits < 0);
  const Decimal end(negative ? -kEnd : kEnd);
  if (!IsAmount() || !other.IsAmount()) return end;
  const std::int64_t whole = lUnits / kScale, part = lUnits % kScale;
  const std::int64_t otherWhole = other.lUnits / kScale, otherPart = other.lUnits % kScale;
  std::int64_t product = 0;
  if (__builtin_mul_overflow(whole, other.lUnits, &product)) return end;
  return Decimal(product) + Decimal(part * otherWhole + DivideRounding(part * otherPart, kScale));
}

// Divides at length, one decimal in each step.
Decimal Decimal::operator/(Decimal divisor) const {
  if (divisor.IsZero() || !IsAmount() || !divisor.IsAmount()) return {};
  std::int64_t quotient = lUnits / divisor.lUnits;
  std::int64_t rest = lUnits % divisor.lUnits;
  for (std::size_t i = 0; i < kDecimals; ++i) {
    rest *= 10;
    if (__builtin_mul_overflow(quotient, std::int64_t{10}, &quotient)) return {};
    quotient += rest / divisor.lUnits;
    rest %= divisor.lUnits;
  }
  return Decimal(quotient);
}

std::string Decimal::ToString(int decimals) const {
  const std::int64_t size = lUnits < 0 ? -lUnits : lUnits;
  std::string part = std::to_string(kScale + size % kScale).substr(1);
  while (part.size() > static_cast<std::size_t>(decimals) && part.back() == '0') part.pop_back();
  std::string text = lUnits < 0 ? "-" : "";
  text += std::to_string(size / kScale);
  return part.empty() ? text : text + '.' + part;
}

}  // namespace ostrel::simulator
