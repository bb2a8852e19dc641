// How an operation of the request processor is asked to behave.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace ostrel::simulator {

struct Conduct {
  std::chrono::milliseconds delay{0};
  std::uint32_t error = 0;  // HRESULT; 0: the operation does its work
  bool dies = false;        // QuickBooks ends in the middle of it, after the delay
};

/// "2.5" (seconds, at most 3600), "0x80040408", "1": false when the text has another form. An empty
/// one asks for nothing.
bool ReadSeconds(std::string_view text, std::chrono::milliseconds& delay);
bool ReadError(std::string_view text, std::uint32_t& hresult);
bool ReadFlag(std::string_view text, bool& flag);

}  // namespace ostrel::simulator
