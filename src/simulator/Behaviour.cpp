#include "simulator/Behaviour.h"

#include <charconv>
#include <cmath>
#include <string>
#include <utility>

namespace ostrel::simulator {
namespace {

constexpr double kMaxSeconds = 3600;
constexpr std::uint32_t kFailureBit = 0x80000000;

constexpr std::pair<std::string_view, Conduct Behaviour::*> kOperations[] = {
    {"openConnection", &Behaviour::openConnection},
    {"beginSession", &Behaviour::beginSession},
    {"processRequest", &Behaviour::processRequest},
    {"companyFileName", &Behaviour::companyFileName},
};

bool ReadSeconds(std::string_view text, std::chrono::milliseconds& delay) {
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

std::string_view Value(const Element& element, std::string_view operation, std::string_view what) {
  const std::string* value = element.Find(std::string(operation).append(what));
  return value ? Trimmed(*value) : std::string_view();
}

}  // namespace

std::optional<Behaviour> ReadBehaviour(const Element& element) {
  Behaviour behaviour;
  for (const auto& [name, member] : kOperations) {
    Conduct& conduct = behaviour.*member;
    if (!ReadSeconds(Value(element, name, "Seconds"), conduct.delay)) return std::nullopt;
    if (!ReadError(Value(element, name, "Error"), conduct.error)) return std::nullopt;
  }
  if (!ReadFlag(Value(element, "processRequest", "Dies"), behaviour.processRequestDies)) {
    return std::nullopt;
  }
  return behaviour;
}

}  // namespace ostrel::simulator
