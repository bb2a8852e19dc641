#include "sockets/DottedAddress.h"

namespace ostrel {
namespace {

/// Takes a number from 0 to 255 off the front of the text.
std::optional<std::uint32_t> TakeNumber(TextView& text) {
  std::uint32_t number = 0;
  std::size_t digits = 0;
  while (digits < text.size() && digits < 4 && text[digits] >= u'0' && text[digits] <= u'9') {
    number = number * 10 + (text[digits] - u'0');
    ++digits;
  }
  if (digits == 0 || number > 255) return std::nullopt;
  text.remove_prefix(digits);
  return number;
}

}  // namespace

std::optional<std::uint32_t> ParseDottedAddress(TextView text) {
  std::uint32_t ip = 0;
  for (int part = 0; part < 4; ++part) {
    if (part > 0 && !text.starts_with(u'.')) return std::nullopt;
    text.remove_prefix(part > 0 ? 1 : 0);
    const auto number = TakeNumber(text);
    if (!number) return std::nullopt;
    ip = ip << 8 | *number;
  }
  return text.empty() ? std::optional(ip) : std::nullopt;
}

Text DottedAddress(std::uint32_t ip) {
  Text text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text += ToText(static_cast<std::int64_t>(ip >> shift & 0xFF));
    text += shift > 0 ? u"." : u"";
  }
  return text;
}

}  // namespace ostrel
