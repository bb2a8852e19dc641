// The reader takes only what has one meaning in every reader of XML, and gives up at the first byte
// of anything else: comments, instructions, declarations, namespaces, names and white space in
// tags that are out of the ordinary, carriage returns, text beside children. So it never has to
// judge what is well-formed, and has no errors of its own.
//
// The children of an open element collect in a list for its level, from where they move into a list
// of just their number: trees of millions of elements hold no spare room.
#include "simulator/xml/PlainXml.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxNameBytes = 1000;
constexpr std::size_t kMaxPlainAttributes = 100;

enum ByteUse : std::uint8_t { kInName = 1, kBlank = 2, kInText = 4, kInValue = 8 };

// The bytes that mean themselves: in names, as white space, in texts and in the values of
// attributes.
constexpr auto kByteUses = [] {
  std::array<std::uint8_t, 256> uses = {};
  for (std::size_t byte = ' '; byte < 0x80; ++byte) uses[byte] = kInText | kInValue;
  for (const char byte : {'\t', '\n'}) uses[static_cast<std::size_t>(byte)] = kInText;
  for (const char byte : {'<', '&'}) uses[static_cast<std::size_t>(byte)] = 0;
  uses[']'] = kInValue;  // "]]>" may not stand in a text
  uses['"'] = kInText;
  for (const char byte : {' ', '\t', '\n'}) uses[static_cast<std::size_t>(byte)] |= kBlank;
  for (const char byte : std::string_view("_-.")) uses[static_cast<std::size_t>(byte)] |= kInName;
  for (std::size_t byte = 'a'; byte <= 'z'; ++byte) uses[byte] |= kInName;
  for (std::size_t byte = 'A'; byte <= 'Z'; ++byte) uses[byte] |= kInName;
  for (std::size_t byte = '0'; byte <= '9'; ++byte) uses[byte] |= kInName;
  return uses;
}();

constexpr std::pair<std::string_view, char> kReferences[] = {
    {"&amp;", '&'},   {"&lt;", '<'},  {"&gt;", '>'},   {"&quot;", '"'},
    {"&apos;", '\''}, {"&#9;", '\t'}, {"&#10;", '\n'}, {"&#13;", '\r'},
};

// The length of the character of several bytes at the front; 0 when it is not valid in XML.
std::size_t LengthOfCharacter(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
  const unsigned lead = byte(0);
  if (lead >= 0xC2 && lead < 0xE0) return follows(1) ? 2 : 0;
  if (lead >= 0xE0 && lead < 0xF0) {
    const unsigned start = lead << 8 | byte(1);
    const bool overlong = start < 0xE0A0;
    const bool surrogate = start >= 0xEDA0 && start < 0xEE00;
    const bool noCharacter = start == 0xEFBF && byte(2) >= 0xBE;
    return follows(1) && follows(2) && !overlong && !surrogate && !noCharacter ? 3 : 0;
  }
  const unsigned start = lead << 8 | byte(1);
  const bool inRange = start >= 0xF090 && start < 0xF490;
  return inRange && follows(1) && follows(2) && follows(3) ? 4 : 0;
}

class PlainReader {
 public:
  PlainReader(std::string_view xml, std::size_t maxElements)
      : sRest(xml), lElementsLeft(maxElements) {}

  bool Read(Element& root) {
    Skip("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    SkipAll(kBlank);
    if (!Skip('<') || !TakeElement(root, 0)) return false;
    SkipAll(kBlank);
    return sRest.empty();
  }

 private:
  bool Skip(std::string_view text) {
    if (!sRest.starts_with(text)) return false;
    sRest.remove_prefix(text.size());
    return true;
  }

  bool Skip(char byte) {
    if (sRest.empty() || sRest.front() != byte) return false;
    sRest.remove_prefix(1);
    return true;
  }

  bool IsAtEnd() const { return sRest.size() > 1 && sRest[0] == '<' && sRest[1] == '/'; }

  std::string_view SkipAll(ByteUse use) {
    std::size_t count = 0;
    while (count < sRest.size() && kByteUses[static_cast<unsigned char>(sRest[count])] & use) {
      ++count;
    }
    const std::string_view skipped = sRest.substr(0, count);
    sRest.remove_prefix(count);
    return skipped;
  }

  // The element whose "<" has been skipped.
  bool TakeElement(Element& element, std::size_t level) {
    if (level == kMaxXmlDepth || lElementsLeft-- == 0) return false;
    BreatheLightly();
    if (!TakeName(element.name) || !TakeAttributes(element)) return false;
    if (Skip('/')) return Skip('>');
    return Skip('>') && TakeContent(element, level) && Skip('<') && Skip('/') &&
           Skip(element.name) && Skip('>');
  }

  bool TakeName(std::string& sName) {
    sName = SkipAll(kInName);
    if (sName.empty() || sName.size() > kMaxNameBytes) return false;
    const char first = sName.front();
    return first != '-' && first != '.' && !(first >= '0' && first <= '9');
  }

  bool TakeAttributes(Element& element) {
    while (Skip(' ')) {
      if (sRest.starts_with('/')) return true;
      Attribute& attribute = element.attributes.emplace_back();
      if (element.attributes.size() > kMaxPlainAttributes) return false;
      if (!TakeName(attribute.name) || attribute.name == "xmlns") return false;
      if (element.Find(attribute.name) != &attribute.value) return false;
      if (!Skip("=\"") || !TakeText(attribute.value, kInValue) || !Skip('"')) return false;
    }
    return true;
  }

  bool TakeContent(Element& element, std::size_t level) {
    const std::string_view before = sRest;
    if (SkipAll(kBlank).size() > kMaxXmlTextBytes) return false;
    if (sRest.starts_with('<') && !IsAtEnd()) return TakeChildren(element, level);
    sRest = before;
    return TakeText(element.text, kInText);
  }

  bool TakeChildren(Element& element, std::size_t level) {
    std::vector<Element>& children = oLevels[level];
    children.clear();
    while (!IsAtEnd()) {
      if (!Skip('<') || !TakeElement(children.emplace_back(), level + 1)) return false;
      SkipAll(kBlank);
    }
    element.children.assign(std::move_iterator(children.begin()),
                            std::move_iterator(children.end()));
    return true;
  }

  // Up to the first byte that cannot stand there, which the caller judges.
  bool TakeText(std::string& sText, ByteUse use) {
    sText = SkipAll(use);
    while (TakeOther(sText)) {
      sText += SkipAll(use);
      if (sText.size() > kMaxXmlTextBytes) return false;
    }
    return sText.size() <= kMaxXmlTextBytes;
  }

  bool TakeOther(std::string& sText) {
    if (sRest.starts_with('<') || sRest.starts_with("]]>")) return false;
    if (Skip(']')) {
      sText += ']';
      return true;
    }
    for (const auto& [reference, character] : kReferences) {
      if (!Skip(reference)) continue;
      sText += character;
      return true;
    }
    const std::size_t length = LengthOfCharacter(sRest);
    sText += sRest.substr(0, length);
    sRest.remove_prefix(length);
    return length > 0;
  }

  std::string_view sRest;
  std::size_t lElementsLeft;
  std::array<std::vector<Element>, kMaxXmlDepth> oLevels;
};

}  // namespace

bool ReadPlainXml(std::string_view xml, std::size_t maxElements, Element& root) {
  root = Element();
  return PlainReader(xml, maxElements).Read(root);
}

}  // namespace ostrel::simulator
