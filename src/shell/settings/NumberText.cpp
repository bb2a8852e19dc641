#include "shell/settings/NumberText.h"

#include <algorithm>
#include <limits>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

// More than any number asked for, and ten times it still fits.
constexpr std::int64_t kBeyondEverything = std::int64_t{1} << 40;

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

TextView TakeDigits(TextView& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
  const TextView digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

bool TakeOneOf(TextView& text, TextView characters) {
  if (text.empty() || characters.find(text.front()) == TextView::npos) return false;
  text.remove_prefix(1);
  return true;
}

std::int64_t WholeNumber(TextView digits) {
  std::int64_t number = 0;
  for (const char16_t digit : digits) {
    number = std::min(number * 10 + (digit - u'0'), kBeyondEverything);
  }
  return number;
}

bool RoundsUp(TextView fraction, bool isOdd) {
  if (fraction.empty() || fraction.front() != u'5') {
    return !fraction.empty() && fraction.front() > u'5';
  }
  const bool isHalf = fraction.find_first_not_of(u'0', 1) == TextView::npos;
  return !isHalf || isOdd;
}

template <typename Number>
Number Convert(TextView text) {
  text = TrimBlanks(text);
  const bool negative = !text.empty() && text.front() == u'-';
  TakeOneOf(text, u"+-");
  const TextView whole = TakeDigits(text);
  const TextView fraction = TakeOneOf(text, u".") ? TakeDigits(text) : TextView();
  if (!text.empty() || whole.size() + fraction.size() == 0) {
    throw RunTimeError(ErrorNumber::kTypeMismatch, {}, u"Type mismatch");
  }

  std::int64_t number = WholeNumber(whole);
  if (RoundsUp(fraction, number % 2 != 0)) ++number;
  if (negative) number = -number;
  using Limits = std::numeric_limits<Number>;
  if (number < Limits::min() || number > Limits::max()) {
    throw RunTimeError(ErrorNumber::kOverflow, {}, u"Overflow");
  }
  return static_cast<Number>(number);
}

}  // namespace

std::int16_t ToInteger(TextView text) { return Convert<std::int16_t>(text); }
std::int32_t ToLong(TextView text) { return Convert<std::int32_t>(text); }

}  // namespace ostrel
