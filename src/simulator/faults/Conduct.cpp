#include "simulator/faults/Conduct.h"

#include <charconv>
#include <cmath>

namespace ostrel::simulator {

bool ReadSeconds(std::string_view text, std::chrono::milliseconds& delay) {
  constexpr double kMaxSeconds = 3600;
  if (text.empty()) return true;
  double seconds = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  if (!whole || !(seconds >= 0 && seconds <= kMaxSeconds)) return false;
  delay = std::chrono::milliseconds(std::llround(seconds * 1000));
  return true;
}

bool ReadError(std::string_view text, std::uint32_t& hresult) {
  constexpr std::uint32_t kFailureBit = 0x80000000;
  if (text.empty()) return true;
  if (!text.starts_with("0x") && !text.starts_with("0X")) return false;
  text.remove_prefix(2);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), hresult, 16);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && (hresult & kFailureBit) != 0;
}

bool ReadFlag(std::string_view text, bool& flag) {
  flag = text == "1";
  return flag || text.empty() || text == "0";
}

}  // namespace ostrel::simulator
