// CheckContent walks a definition along with the elements: each particle says by which elements it
// may begin, so that one pass without going back finds unknown, misplaced, missing and surplus
// elements. It refuses the whole request. Normalize then judges the values (numbers, dates,
// lengths), brings them into the form in which they are stored, and refuses only the one message,
// with a status.
#include <algorithm>
#include <cctype>

#include "simulator/grammar/Grammar.h"
#include "simulator/values/Dates.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

void Require(bool condition) {
  if (!condition) Fail(Hresult::kParseError);
}

bool AreDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool IsCount(std::string_view text) {
  return AreDigits(text) && text.size() <= 9 && text.find_first_not_of('0') != text.npos;
}

bool IsBoolean(std::string_view text) {
  return text == "true" || text == "false" || text == "1" || text == "0";
}

void CheckValue(std::string_view text, const Particle& particle) {
  if (particle.type == FieldType::kBoolean) Require(IsBoolean(text));
  if (particle.type == FieldType::kCount) Require(IsCount(text));
  if (particle.type == FieldType::kWord) {
    Require(std::ranges::find(particle.words, text) != particle.words.end());
  }
}

bool MayHave(const Particle& particle, std::string_view attribute) {
  if (attribute == "useMacro") return particle.mayUseMacro;
  return particle.content && std::ranges::find(particle.content->attributes, attribute) !=
                                 particle.content->attributes.end();
}

void CheckElement(const Element& element, const Particle& particle, int version) {
  Breathe();
  for (const Attribute& attribute : element.attributes) {
    Require(MayHave(particle, attribute.name));
  }
  if (particle.content) return CheckContent(element, *particle.content, version);
  Require(element.children.empty());
  CheckValue(Trimmed(element.text), particle);
}

class Walk {
 public:
  Walk(const std::vector<Element>& children, int version)
      : oChildren(children), iVersion(version) {}

  void Through(const Content& content) {
    if (!content.isChoice) {
      for (const Particle& particle : content.particles) Past(particle);
      return;
    }
    const auto chosen = std::ranges::find_if(
        content.particles, [&](const Particle& particle) { return Begins(particle); });
    if (chosen == content.particles.end()) return Require(content.mayBeEmpty);
    Past(*chosen);
  }

  bool IsAtEnd() const { return lNext == oChildren.size(); }

 private:
  bool Begins(const Particle& particle) const {
    if (IsAtEnd() || particle.since > iVersion) return false;
    const std::string_view next = oChildren[lNext].name;
    if (!particle.name.empty()) return particle.name == next;
    return std::ranges::binary_search(particle.content->firsts, next);
  }

  void Past(const Particle& particle) {
    const bool isGroup = particle.name.empty();
    std::size_t count = 0;
    for (; count < particle.most && Begins(particle); ++count) {
      const std::size_t before = lNext;
      if (isGroup) {
        Through(*particle.content);
      } else {
        CheckElement(oChildren[lNext++], particle, iVersion);
      }
      if (lNext == before) break;
    }
    Require(count >= particle.least || (isGroup && particle.content->mayBeEmpty));
  }

  const std::vector<Element>& oChildren;
  int iVersion;
  std::size_t lNext = 0;
};

using Complaint = Status (*)(std::string_view value, std::string_view field);

std::optional<Status> NormalizeNumber(std::string& text, std::string_view name, int decimals,
                                      Complaint complain) {
  const auto number = Decimal::Parse(text);
  if (!number) return complain(text, name);
  text = number->ToString(decimals);
  return std::nullopt;
}

std::optional<Status> NormalizeAmount(std::string& text, std::string_view name) {
  const auto number = Decimal::Parse(text);
  const bool hasCents = text.size() > 3 && text[text.size() - 3] == '.';
  if (!number || !hasCents) return BadAmount(text, name);
  text = number->Cents().ToString(2);
  return std::nullopt;
}

bool IsInteger(std::string_view text) {
  const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
  return AreDigits(digits) && digits.size() <= 9;
}

// "80000001-1262682187"; "-1" names a line that is to be made.
bool IsId(std::string_view text) {
  const auto hexadecimal = [](std::string_view part) {
    return !part.empty() &&
           std::ranges::all_of(part, [](unsigned char c) { return std::isxdigit(c); });
  };
  const std::size_t dash = text.find('-');
  return dash != std::string_view::npos && hexadecimal(text.substr(dash + 1)) &&
         (hexadecimal(text.substr(0, dash)) || text == "-1");
}

// A sample of the zone is enough to judge the form.
bool IsMoment(std::string_view text) { return ParseMoment(text, kEpoch, false).has_value(); }

std::optional<Status> Complain(bool isGood, Complaint complain, std::string_view text,
                               std::string_view name) {
  return isGood ? std::nullopt : std::optional(complain(text, name));
}

std::optional<Status> NormalizeText(std::string& text, const Particle& particle) {
  const std::string_view name = particle.name;
  switch (particle.type) {
    case FieldType::kBoolean:
      text = IsTrue(text) ? "true" : "false";
      return std::nullopt;
    case FieldType::kAmount:
      return NormalizeAmount(text, name);
    case FieldType::kPrice:
      return NormalizeNumber(text, name, 2, BadPrice);
    case FieldType::kQuantity:
      return NormalizeNumber(text, name, 0, BadQuantity);
    case FieldType::kPercent:
      return NormalizeNumber(text, name, 2, BadPercent);
    case FieldType::kFloat:
      return NormalizeNumber(text, name, 0, BadFloat);
    case FieldType::kInteger:
      return Complain(IsInteger(text), BadInteger, text, name);
    case FieldType::kDate:
      return Complain(ParseDate(text).has_value(), BadDate, text, name);
    case FieldType::kMoment:
      return Complain(IsMoment(text), BadMoment, text, name);
    case FieldType::kInterval: {
      const auto minutes = ParseInterval(text);
      if (minutes) text = IntervalText(*minutes);
      return Complain(minutes.has_value(), BadInterval, text, name);
    }
    case FieldType::kId:
      return Complain(IsId(text), InvalidId, text, name);
    default:
      return std::nullopt;
  }
}

std::optional<Status> NormalizeElement(Element& element, const Particle& particle) {
  Breathe();
  if (particle.content) return Normalize(element, *particle.content);
  element.text = Trimmed(element.text);
  if (particle.maxLength != 0 && CharacterCount(element.text) > particle.maxLength) {
    return TooLong(element.text, particle.name);
  }
  const bool isNamed = particle.type == FieldType::kId && !element.Find("useMacro");
  const bool isJudged = !element.text.empty() || isNamed;
  return isJudged ? NormalizeText(element.text, particle) : std::nullopt;
}

}  // namespace

void CheckContent(const Element& element, const Content& content, int version) {
  Require(Trimmed(element.text).empty());
  Walk walk(element.children, version);
  walk.Through(content);
  Require(walk.IsAtEnd());
}

std::optional<Status> Normalize(Element& element, const Content& content) {
  element.text.clear();
  for (Element& child : element.children) {
    const Particle* particle = content.Find(child.name);
    if (!particle) continue;
    if (auto status = NormalizeElement(child, *particle)) return status;
  }
  return std::nullopt;
}

std::size_t CharacterCount(std::string_view utf8) {
  std::size_t count = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    const bool lead = (byte & 0xC0) != 0x80;
    count += lead ? (byte >= 0xF0 ? 2 : 1) : 0;
  }
  return count;
}

bool IsTrue(std::string_view boolean) { return boolean == "true" || boolean == "1"; }

}  // namespace ostrel::simulator
