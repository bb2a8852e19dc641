// A fault is read attribute by attribute. Each attribute says whether it makes sense for an
// operation, for a message or for both; a fault whose attributes have no scope in common, such as
// a status code for "beginSession", is refused when the company is read rather than ignored when
// the call comes.
#include "simulator/faults/Faults.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace ostrel::simulator {
namespace {

constexpr std::string_view kOperations[] = {"openConnection", "beginSession", "processRequest",
                                            "companyFileName"};
constexpr std::string_view kSeverities[] = {"Info", "Warn", "Error"};
constexpr unsigned kMaxResponseSize = 300'000'000;
constexpr unsigned kMaxNumber = 1'000'000;

template <class Number>
bool ReadNumber(std::string_view text, unsigned least, unsigned most, Number& number) {
  unsigned read = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  number = static_cast<Number>(read);
  return whole && read >= least && read <= most;
}

Status& StatusOf(Fault& fault) {
  if (!fault.status) {
    fault.status = {.code = 0, .severity = "Error", .message = "The company file asks for this."};
  }
  return *fault.status;
}

bool ReadStatusCode(std::string_view text, Fault& fault) {
  return ReadNumber(text, 0, kMaxNumber, StatusOf(fault).code);
}

bool ReadSeverity(std::string_view text, Fault& fault) {
  const auto severity = std::ranges::find(kSeverities, text);
  if (severity == std::end(kSeverities)) return false;
  StatusOf(fault).severity = *severity;
  return true;
}

bool ReadMessageText(std::string_view text, Fault& fault) {
  StatusOf(fault).message = text;
  return true;
}

bool ReadResponseSize(std::string_view text, Fault& fault) {
  return ReadNumber(text, 1, kMaxResponseSize, fault.responseSize);
}

bool ReadEvery(std::string_view text, Fault& fault) {
  return ReadNumber(text, 1, kMaxNumber, fault.every);
}

bool ReadOnce(std::string_view text, Fault& fault) { return ReadFlag(text, fault.once); }

bool ReadOperation(std::string_view text, Fault& fault) {
  fault.target = text;
  return std::ranges::find(kOperations, text) != std::end(kOperations);
}

bool ReadMessage(std::string_view text, Fault& fault) {
  fault.target = text;
  return text.ends_with("Rq");
}

bool ReadConductError(std::string_view text, Fault& fault) {
  return ReadError(text, fault.conduct.error);
}

bool ReadConductSeconds(std::string_view text, Fault& fault) {
  return ReadSeconds(text, fault.conduct.delay);
}

bool ReadConductDies(std::string_view text, Fault& fault) {
  return ReadFlag(text, fault.conduct.dies);
}

enum Scope : unsigned { kOfOperations = 1, kOfMessages = 2, kOfBoth = 3 };

struct Knob {
  std::string_view name;
  bool (*read)(std::string_view text, Fault& fault);
  Scope scope;
  std::string_view form;  // what its value must be
};

constexpr Knob kKnobs[] = {
    {"operation", ReadOperation, kOfOperations,
     "openConnection, beginSession, processRequest or companyFileName"},
    {"message", ReadMessage, kOfMessages, "the name of a message such as CustomerAddRq"},
    {"seconds", ReadConductSeconds, kOfOperations, kSecondsForm},
    {"error", ReadConductError, kOfBoth, kErrorForm},
    {"dies", ReadConductDies, kOfOperations, kFlagForm},
    {"statusCode", ReadStatusCode, kOfMessages, "a number from 0 to 1000000"},
    {"statusSeverity", ReadSeverity, kOfMessages, "Info, Warn or Error"},
    {"statusMessage", ReadMessageText, kOfMessages, "a text"},
    {"answerSize", ReadResponseSize, kOfMessages, "a number from 1 to 300000000"},
    {"every", ReadEvery, kOfBoth, "a number from 1 to 1000000"},
    {"once", ReadOnce, kOfBoth, kFlagForm},
};

// Takes one attribute, and narrows down what the fault can be about; returns the reason against it.
std::string TakeKnob(const Attribute& attribute, Fault& fault, unsigned& scope) {
  const auto knob = std::ranges::find(kKnobs, attribute.name, &Knob::name);
  if (knob == std::end(kKnobs)) return "there is no attribute " + attribute.name;
  if (!knob->read(Trimmed(attribute.value), fault)) {
    return WrongValue(attribute.name, attribute.value, knob->form);
  }
  scope &= knob->scope;
  if (scope != 0) return {};
  return "it mixes what is for an operation with what is for a message, at " + attribute.name;
}

bool Strikes(const Fault& fault, unsigned call) {
  return fault.once ? call == fault.every : call % fault.every == 0;
}

}  // namespace

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

std::string WrongValue(std::string_view attribute, std::string_view value, std::string_view form) {
  return std::string(attribute).append("=\"").append(value).append("\" is not ").append(form);
}

std::optional<Fault> ReadFault(const Element& element, std::string& why) {
  Fault fault;
  unsigned scope = kOfBoth;
  for (const Attribute& attribute : element.attributes) {
    why = TakeKnob(attribute, fault, scope);
    if (!why.empty()) return std::nullopt;
  }
  if (!fault.target.empty()) return fault;
  why = "it names neither an operation nor a message";
  return std::nullopt;
}

const Fault* FaultCounts::Count(std::span<const Fault> faults, std::string_view target) {
  oCalls.resize(faults.size());
  const Fault* striking = nullptr;
  for (std::size_t i = 0; i < faults.size(); ++i) {
    if (faults[i].target != target || oCalls[i] == std::numeric_limits<unsigned>::max()) continue;
    ++oCalls[i];
    if (!striking && Strikes(faults[i], oCalls[i])) striking = &faults[i];
  }
  return striking;
}

}  // namespace ostrel::simulator
