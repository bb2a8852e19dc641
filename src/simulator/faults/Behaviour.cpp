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

// Reads an attribute with one of the functions of Faults.h; returns what is wrong with it.
template <class Target>
std::string Take(const Element& element, const std::string& name,
                 bool (*read)(std::string_view text, Target& target), Target& target,
                 std::string_view form) {
  const std::string* value = element.Find(name);
  if (!value || read(Trimmed(*value), target)) return {};
  return WrongValue(name, *value, form);
}

std::string TakeAttributes(const Element& element, Behaviour& behaviour) {
  for (const auto& [operation, member] : kConducts) {
    const std::string name(operation);
    Conduct& conduct = behaviour.*member;
    std::string why = Take(element, name + "Seconds", ReadSeconds, conduct.delay, kSecondsForm);
    if (why.empty()) why = Take(element, name + "Error", ReadError, conduct.error, kErrorForm);
    if (!why.empty()) return why;
  }
  return Take(element, "processRequestDies", ReadFlag, behaviour.processRequestDies, kFlagForm);
}

}  // namespace

std::optional<Behaviour> ReadBehaviour(const Element& element, BehaviourSlip& slip) {
  Behaviour behaviour;
  slip = {.why = TakeAttributes(element, behaviour), .culprit = &element};
  if (!slip.why.empty()) return std::nullopt;
  for (const Element& child : element.children) {
    slip.culprit = &child;
    slip.why = "it is no Fault";
    auto fault = child.name == "Fault" ? ReadFault(child, slip.why) : std::nullopt;
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
