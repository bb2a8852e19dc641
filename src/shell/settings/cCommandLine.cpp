#include "shell/settings/cCommandLine.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "util/Wire.h"

namespace ostrel {
namespace {

constexpr std::size_t kMostValues = 50;
constexpr TextView kBlanks = u" \t";

struct Word {
  TextView sText;  // without the quotes
  bool bQuoted;

  bool IsSwitch() const {
    return !bQuoted && sText.size() > 1 && (sText.front() == u'-' || sText.front() == u'/');
  }
};

// A quote without its partner reaches to the end.
std::optional<Word> TakeWord(TextView& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.empty()) return std::nullopt;
  const bool quoted = text.front() == u'"';
  if (quoted) text.remove_prefix(1);
  const std::size_t end = quoted ? text.find(u'"') : text.find_first_of(kBlanks);
  const Word word{text.substr(0, end), quoted};
  text.remove_prefix(std::min(word.sText.size() + (quoted ? 1 : 0), text.size()));
  return word;
}

}  // namespace

void cCommandLine::AddSwitch(TextView name, bool hasArguments) {
  Switches.push_back({LowerCase(name), hasArguments, false, {}});
}

void cCommandLine::CommandLine(TextView text) {
  sCommandLine = text;
  sMainArg.clear();
  for (Switch& one : Switches) one = {std::move(one.sName), one.bHasArguments, false, {}};

  while (const auto word = TakeWord(text)) {
    Switch* const given = word->IsSwitch() ? Find(word->sText.substr(1)) : nullptr;
    if (given == nullptr) {
      AddMainArg(word->sText);
      continue;
    }
    given->bGiven = true;
    const auto value = given->bHasArguments ? TakeWord(text) : std::nullopt;
    if (value && given->Values.size() < kMostValues) given->Values.emplace_back(value->sText);
  }
}

bool cCommandLine::HasSwitch(TextView name) const {
  const Switch* const found = Find(name);
  return found != nullptr && found->bGiven;
}

Text cCommandLine::SwitchValue(TextView name) const {
  const Switch* const found = Find(name);
  Text joined;
  if (found == nullptr || found->Values.empty()) return joined;
  for (const Text& value : found->Values) joined.append(value).push_back(kAttributeMark);
  joined.pop_back();
  return joined;
}

cCommandLine::Switch* cCommandLine::Find(TextView name) {
  return const_cast<Switch*>(std::as_const(*this).Find(name));
}

const cCommandLine::Switch* cCommandLine::Find(TextView name) const {
  const auto found = std::find_if(Switches.begin(), Switches.end(),
                                  [&](const Switch& one) { return one.sName == LowerCase(name); });
  return found == Switches.end() ? nullptr : &*found;
}

void cCommandLine::AddMainArg(TextView word) {
  if (!sMainArg.empty()) sMainArg.push_back(u' ');
  sMainArg.append(word);
}

}  // namespace ostrel
