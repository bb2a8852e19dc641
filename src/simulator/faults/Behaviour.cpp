#include "simulator/faults/Behaviour.h"

#include <string>
#include <utility>

namespace ostrel::simulator {
namespace {

constexpr std::pair<std::string_view, Conduct Behaviour::*> kConducts[] = {
    {"openConnection", &Behaviour::openConnection},
    {"beginSession", &Behaviour::beginSession},
    {"processRequest", &Behaviour::processRequest},
    {"companyFileName", &Behaviour::companyFileName},
};

std::string_view Value(const Element& element, std::string_view operation, std::string_view what) {
  const std::string* value = element.Find(std::string(operation).append(what));
  return value ? Trimmed(*value) : std::string_view();
}

}  // namespace

std::optional<Behaviour> ReadBehaviour(const Element& element) {
  Behaviour behaviour;
  for (const auto& [name, member] : kConducts) {
    Conduct& conduct = behaviour.*member;
    if (!ReadSeconds(Value(element, name, "Seconds"), conduct.delay)) return std::nullopt;
    if (!ReadError(Value(element, name, "Error"), conduct.error)) return std::nullopt;
  }
  if (!ReadFlag(Value(element, "processRequest", "Dies"), behaviour.processRequestDies)) {
    return std::nullopt;
  }
  for (const Element& child : element.children) {
    auto fault = child.name == "Fault" ? ReadFault(child) : std::nullopt;
    if (!fault) return std::nullopt;
    behaviour.faults.push_back(*std::move(fault));
  }
  return behaviour;
}

Conduct ConductOf(const Behaviour& behaviour, std::string_view operation) {
  for (const auto& [name, member] : kConducts) {
    if (name != operation) continue;
    Conduct conduct = behaviour.*member;
    conduct.dies = member == &Behaviour::processRequest && behaviour.processRequestDies;
    return conduct;
  }
  return {};
}

}  // namespace ostrel::simulator
