// The values that a socket sends and hands out: text goes one byte a character through the code
// page, every number in its memory form, little-endian.
#pragma once

#include <cstdint>
#include <span>
#include <variant>

#include "util/Text.h"

namespace ostrel {

/// A fixed-point number: ten-thousandths in 8 bytes.
struct Currency {
  std::int64_t tenThousandths = 0;
};

/// Days since 30 December 1899 in 8 bytes, the time of day as the fraction.
struct DateValue {
  double days = 0;
};

/// The values that SendData takes, none of which is ever split or joined on the way: the peer sees
/// their bytes one after the other. A text and an array of bytes travel as they are, without a
/// length or an end in front or behind; a Boolean as 16 bits, true as -1. Views are read during the
/// call only.
using SocketValue = std::variant<TextView, std::span<const std::uint8_t>, bool, std::uint8_t,
                                 std::int16_t, std::int32_t, float, double, Currency, DateValue>;

/// Bytes that a text class holds, as SendData takes them.
inline std::span<const std::uint8_t> AsBytes(std::string_view bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

}  // namespace ostrel
