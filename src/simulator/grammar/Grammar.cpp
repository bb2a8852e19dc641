// The definitions are read once. A reader walks their notation from left to right; what is shared
// (%Name) and the words (&Name) are defined before they are used, elements may be defined anywhere.
#include "simulator/grammar/Grammar.h"

#include <algorithm>
#include <charconv>
#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "simulator/grammar/Definitions.h"

namespace ostrel::simulator {
namespace {

constexpr std::pair<std::string_view, FieldType> kTypes[] = {
    {"bool", FieldType::kBoolean}, {"count", FieldType::kCount},
    {"int", FieldType::kInteger},  {"amount", FieldType::kAmount},
    {"price", FieldType::kPrice},  {"percent", FieldType::kPercent},
    {"float", FieldType::kFloat},  {"quantity", FieldType::kQuantity},
    {"date", FieldType::kDate},    {"datetime", FieldType::kMoment},
    {"id", FieldType::kId},        {"macro", FieldType::kId},
    {"guid", FieldType::kGuid},    {"interval", FieldType::kInterval},
};

[[noreturn]] void Reject(std::string_view what, std::string_view where) {
  throw std::logic_error(std::string(what).append(": ").append(where));
}

bool IsNameCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// Computes what follows from the particles; groups among them are concluded. A sequence may begin
// with each of its particles up to the first that must stand.
void Conclude(Content& content) {
  bool begins = true;
  bool anyMayLack = content.particles.empty();
  for (const Particle& particle : content.particles) {
    const Content* group = particle.name.empty() ? particle.content : nullptr;
    const bool mayLack = particle.least == 0 || (group && group->mayBeEmpty);
    if (content.isChoice || begins) {
      const auto firsts = group ? group->firsts : std::vector{particle.name};
      content.firsts.insert(content.firsts.end(), firsts.begin(), firsts.end());
    }
    if (group) {
      std::ranges::copy(group->elements, std::back_inserter(content.elements));
    } else {
      content.elements.emplace_back(particle.name, &particle);
    }
    begins = begins && mayLack;
    anyMayLack = anyMayLack || mayLack;
  }
  content.mayBeEmpty = content.isChoice ? anyMayLack : begins;
  std::ranges::sort(content.firsts);
  std::ranges::stable_sort(content.elements, {},
                           &std::pair<std::string_view, const Particle*>::first);
}

using Words = std::vector<std::string_view>;

class Definitions {
 public:
  Definitions();

  const Content* Find(std::string_view name) const {
    const auto found = oContents.find(name);
    return found == oContents.end() ? nullptr : found->second.get();
  }
  const std::vector<std::string_view>& Messages() const { return oMessages; }

 private:
  void ReadAll(std::string_view definitions);
  void ReadOne(std::string_view definition);
  void Link(Content& content);

  friend class ContentReader;

  std::map<std::string_view, std::unique_ptr<Content>> oContents;
  std::map<std::string_view, Words> oWords;
  std::deque<Words> oWordsInPlace;
  std::deque<Content> oGroups;
  std::vector<std::string_view> oMessages;
};

// Reads what stands behind the = of a definition.
class ContentReader {
 public:
  ContentReader(Definitions& definitions, std::string_view text)
      : oDefinitions(definitions), sRest(text) {}

  void ReadInto(Content& content) {
    ReadAlternatives(content);
    if (!sRest.empty()) Reject("unexpected text in a definition", sRest);
  }

 private:
  void SkipSpace() {
    const std::size_t end = sRest.find_first_not_of(" \n");
    sRest.remove_prefix(std::min(end, sRest.size()));
  }
  bool Take(char c) {
    if (!sRest.starts_with(c)) return false;
    sRest.remove_prefix(1);
    return true;
  }
  template <class Belongs>
  std::string_view TakeWhile(Belongs belongs) {
    const auto end = std::find_if_not(sRest.begin(), sRest.end(), belongs);
    const std::string_view taken = sRest.substr(0, static_cast<std::size_t>(end - sRest.begin()));
    sRest.remove_prefix(taken.size());
    return taken;
  }
  std::string_view TakeName() { return TakeWhile(IsNameCharacter); }
  std::size_t TakeNumber() {
    const std::string_view digits = TakeWhile([](char c) { return c >= '0' && c <= '9'; });
    std::size_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
  }

  void ReadAlternatives(Content& content) {
    std::vector<Content> alternatives(1);
    do {
      ReadSequence(alternatives.back(), content);
    } while (Take('|') && (alternatives.emplace_back(), true));
    content.isChoice = alternatives.size() > 1;
    if (content.isChoice) {
      for (Content& alternative : alternatives) content.particles.push_back(AsOne(alternative));
    } else {
      content.particles = std::move(alternatives.front().particles);
    }
    Conclude(content);
  }

  Particle AsOne(Content& sequence) {
    if (sequence.particles.size() == 1) return sequence.particles.front();
    Content& group = oDefinitions.oGroups.emplace_back(std::move(sequence));
    Conclude(group);
    return {.type = FieldType::kGroup, .content = &group};
  }

  void ReadSequence(Content& sequence, Content& owner) {
    for (SkipSpace(); !sRest.empty() && sRest.front() != '|' && sRest.front() != ')'; SkipSpace()) {
      if (Take('@')) {
        owner.attributes.push_back(TakeName());
        Take('?');
      } else if (Take('%')) {
        ReadShared(sequence);
      } else {
        sequence.particles.push_back(Take('(') ? ReadGroup(owner) : ReadElement());
      }
    }
  }

  void ReadShared(Content& sequence) {
    const std::string name = std::string("%").append(TakeName());
    const Content* shared = oDefinitions.Find(name);
    if (!shared) Reject("a part that is not defined", name);
    if (shared->isChoice) {
      sequence.particles.push_back({.type = FieldType::kGroup, .content = shared});
    } else {
      sequence.particles.insert(sequence.particles.end(), shared->particles.begin(),
                                shared->particles.end());
    }
  }

  Particle ReadGroup(Content& owner) {
    Content& group = oDefinitions.oGroups.emplace_back();
    ReadAlternatives(group);
    owner.attributes.insert(owner.attributes.end(), group.attributes.begin(),
                            group.attributes.end());
    if (!Take(')')) Reject("a group without an end", sRest);
    Particle particle{.type = FieldType::kGroup, .content = &group};
    ReadOccurrence(particle);
    return particle;
  }

  Particle ReadElement() {
    Particle particle{.name = TakeName(), .type = FieldType::kGroup};
    if (particle.name.empty()) Reject("unexpected text in a definition", sRest);
    ReadOccurrence(particle);
    if (Take(':')) ReadType(particle);
    if (Take('^')) {
      particle.since = 10 * static_cast<int>(TakeNumber());
      if (Take('.')) particle.since += static_cast<int>(TakeNumber());
    }
    return particle;
  }

  void ReadOccurrence(Particle& particle) {
    if (Take('{')) {
      particle.least = TakeNumber();
      Take(',');
      particle.most = TakeNumber();
      Take('}');
      return;
    }
    const bool any = Take('*');
    const bool many = any || Take('+');
    if (any || (!many && Take('?'))) particle.least = 0;
    if (many) particle.most = Particle::kAnyNumber;
  }

  void ReadType(Particle& particle) {
    if (Take('=')) {
      Words& words = oDefinitions.oWordsInPlace.emplace_back();
      do {
        words.push_back(TakeName());
      } while (Take('|'));
      particle.type = FieldType::kWord;
      particle.words = words;
      return;
    }
    if (Take('&')) {
      const auto words = oDefinitions.oWords.find(TakeName());
      if (words == oDefinitions.oWords.end()) Reject("words that are not defined", particle.name);
      particle.type = FieldType::kWord;
      particle.words = words->second;
      return;
    }
    ReadTypeName(particle, TakeName());
  }

  static void ReadTypeName(Particle& particle, std::string_view name) {
    if (name.starts_with("str")) {
      particle.type = FieldType::kText;
      std::from_chars(name.data() + 3, name.data() + name.size(), particle.maxLength);
      return;
    }
    const auto type =
        std::ranges::find(kTypes, name, &std::pair<std::string_view, FieldType>::first);
    if (type == std::end(kTypes)) Reject("an unknown type", name);
    particle.type = type->second;
    particle.mayUseMacro = name == "macro";
  }

  Definitions& oDefinitions;
  std::string_view sRest;
};

Definitions::Definitions() {
  for (const auto text : {CommonDefinitions(), ListDefinitions(), TransactionDefinitions()}) {
    ReadAll(text);
  }
  ReadAll(MessageDefinitions());
  for (auto& [name, content] : oContents) Link(*content);
  for (Content& group : oGroups) Link(group);
  for (const auto& [name, content] : oContents) {
    if (name.ends_with("Rq")) oMessages.push_back(name);
  }
}

void Definitions::ReadAll(std::string_view definitions) {
  while (!definitions.empty()) {
    std::size_t end = definitions.find('\n');
    while (end < definitions.size() - 1 && definitions[end + 1] == ' ') {
      end = definitions.find('\n', end + 1);
    }
    if (end > 0) ReadOne(definitions.substr(0, end));
    definitions.remove_prefix(end + 1);
  }
}

void Definitions::ReadOne(std::string_view definition) {
  const std::size_t equals = definition.find(" =");
  if (equals == std::string_view::npos) Reject("no definition", definition);
  const std::string_view name = definition.substr(0, equals);
  const std::string_view text = definition.substr(equals + 2);
  if (name.starts_with('&')) {
    Words& words = oWords[name.substr(1)];
    for (std::size_t at = 0; (at = text.find_first_not_of(" \n", at)) != std::string_view::npos;) {
      const std::size_t end = std::min(text.find_first_of(" \n", at), text.size());
      words.push_back(text.substr(at, end - at));
      at = end;
    }
    return;
  }
  auto content = std::make_unique<Content>();
  content->name = name;
  ContentReader(*this, text).ReadInto(*content);
  if (!oContents.emplace(name, std::move(content)).second) Reject("a second definition", name);
}

// Gives the elements that have one the content of their definition.
void Definitions::Link(Content& content) {
  for (Particle& particle : content.particles) {
    if (particle.name.empty() || particle.type != FieldType::kGroup) continue;
    particle.content = Find(particle.name);
    if (!particle.content) Reject("an element that is not defined", particle.name);
    const auto& children = particle.content->particles;
    const bool isReference = children.size() == 2 && children.front().name == "ListID";
    if (isReference) particle.type = FieldType::kReference;
  }
}

const Definitions& TheDefinitions() {
  static const Definitions definitions;
  return definitions;
}

}  // namespace

const Particle* Content::Find(std::string_view element) const {
  const auto found = std::ranges::lower_bound(elements, element, {},
                                              &std::pair<std::string_view, const Particle*>::first);
  return found == elements.end() || found->first != element ? nullptr : found->second;
}

const Content* FindContent(std::string_view name) { return TheDefinitions().Find(name); }

const std::vector<std::string_view>& MessageNames() { return TheDefinitions().Messages(); }

}  // namespace ostrel::simulator
