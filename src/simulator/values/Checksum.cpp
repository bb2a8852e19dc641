#include "simulator/values/Checksum.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ostrel::simulator {
namespace {

// Each step can be undone, so that two texts which differ in one word never meet again.
std::uint64_t Mixed(std::uint64_t sum, std::uint64_t word) {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  sum = (sum ^ word) * kOdd;
  return sum ^ (sum >> 32);
}

}  // namespace

std::uint64_t Checksum(std::string_view bytes, std::uint64_t before) {
  std::uint64_t sum = Mixed(before, bytes.size());
  while (!bytes.empty()) {
    std::uint64_t word = 0;
    const std::size_t count = std::min(bytes.size(), sizeof word);
    std::memcpy(&word, bytes.data(), count);
    sum = Mixed(sum, word);
    bytes.remove_prefix(count);
  }
  return sum;
}

std::string ChecksumText(std::uint64_t checksum) {
  char text[24];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(checksum));
  return text;
}

}  // namespace ostrel::simulator
