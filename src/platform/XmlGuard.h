// Looks over an XML text before a parser gets it, and finds what would hold the parser for minutes:
// parsers compare each attribute of a tag with all before it, look up each prefix among all
// namespaces, and expand what an internal document type declares. Linear, and header-only, because
// the stand-in's reader and both systems' schema validation use it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "util/Text.h"

namespace ostrel::platform {

enum class XmlHazard {
  kNone,
  kInternalSubset,  // a document type with declarations of its own
  kAttributes,      // more than kMaxXmlAttributes in one tag
  kNamespaces,      // more than kMaxXmlNamespaces declared in the whole text
};

inline constexpr std::size_t kMaxXmlAttributes = 1'000;
inline constexpr std::size_t kMaxXmlNamespaces = 200;

/// Why the text is refused, in words; empty for kNone.
constexpr TextView HazardText(XmlHazard hazard) {
  switch (hazard) {
    case XmlHazard::kInternalSubset:
      return u"a document type may not hold declarations";
    case XmlHazard::kAttributes:
      return u"too many attributes";
    case XmlHazard::kNamespaces:
      return u"too many namespaces";
    case XmlHazard::kNone:
      break;
  }
  return {};
}

/// Follows one text that comes in pieces, in characters or in the bytes of any encoding that
/// contains ASCII. Where the text is not well-formed its verdict means nothing: a parser stops
/// there.
class XmlGuard {
 public:
  /// The first hazard in what has come so far.
  template <class Character>
  XmlHazard Look(std::basic_string_view<Character> piece) {
    for (std::size_t i = 0; i < piece.size() && iHazard == XmlHazard::kNone; ++i) {
      if (iPlace == Place::kText) {
        i = std::min(piece.find(Character('<'), i), piece.size());
        if (i == piece.size()) break;
      }
      const auto c = static_cast<char32_t>(
          static_cast<std::conditional_t<sizeof(Character) == 1, unsigned char, Character>>(
              piece[i]));
      if (c != 0) Step(c, lBefore + i);
    }
    lBefore += piece.size();
    return iHazard;
  }

  /// Where the document type stands, from its "<" to behind its ">"; both 0 without one.
  std::size_t TypeBegin() const { return lTypeBegin; }
  std::size_t TypeEnd() const { return lTypeEnd; }

 private:
  enum class Place { kText, kOpened, kBang, kTag, kInstruction, kComment, kCData, kType };

  void Step(char32_t c, std::size_t position) {
    switch (iPlace) {
      case Place::kText:
        lOpened = position;
        return Enter(Place::kOpened);
      case Place::kOpened:
        return Enter(c == '?' ? Place::kInstruction : c == '!' ? Place::kBang : Place::kTag);
      case Place::kBang:
        return StepBehindBang(c);
      case Place::kTag:
        return StepInTag(c);
      case Place::kInstruction:
        return LeaveAt(c, '?', 1);
      case Place::kComment:
        return LeaveAt(c, '-', 2);
      case Place::kCData:
        return LeaveAt(c, ']', 2);
      case Place::kType:
        return StepInType(c, position);
    }
  }

  void Enter(Place next) {
    iPlace = next;
    cQuote = 0;
    lRun = 0;
    lAttributes = 0;
    lMatched = 0;
  }

  // "<!--", "<![CDATA[" or "<!DOCTYPE".
  void StepBehindBang(char32_t c) {
    if (c == '-' && ++lRun < 2) return;
    Enter(c == '-' ? Place::kComment : c == '[' ? Place::kCData : Place::kType);
  }

  // The end of a part that is closed by so many of a character and a ">".
  void LeaveAt(char32_t c, char32_t end, std::size_t count) {
    if (c == '>' && lRun >= count) return Enter(Place::kText);
    lRun = c == end ? lRun + 1 : 0;
  }

  // True inside a quoted value, and at its quotes.
  bool IsQuoted(char32_t c) {
    if (cQuote != 0) {
      if (c == cQuote) cQuote = 0;
      return true;
    }
    if (c != '"' && c != '\'') return false;
    cQuote = c;
    return true;
  }

  void StepInTag(char32_t c) {
    constexpr std::string_view kDeclaration = "xmlns";
    if (IsQuoted(c)) return;
    if (c == '>') return Enter(Place::kText);
    if (c == '=' && ++lAttributes > kMaxXmlAttributes) iHazard = XmlHazard::kAttributes;
    const auto wanted = static_cast<unsigned char>(kDeclaration[lMatched]);
    lMatched = c == wanted ? lMatched + 1 : c == 'x' ? 1 : 0;
    if (lMatched < kDeclaration.size()) return;
    lMatched = 0;
    if (++lNamespaces > kMaxXmlNamespaces) iHazard = XmlHazard::kNamespaces;
  }

  void StepInType(char32_t c, std::size_t position) {
    if (IsQuoted(c)) return;
    if (c == '[') iHazard = XmlHazard::kInternalSubset;
    if (c != '>') return;
    lTypeBegin = lOpened;
    lTypeEnd = position + 1;
    Enter(Place::kText);
  }

  XmlHazard iHazard = XmlHazard::kNone;
  Place iPlace = Place::kText;
  char32_t cQuote = 0;          // of the quoted value around; 0: none
  std::size_t lRun = 0;         // of the character that may end what is around
  std::size_t lAttributes = 0;  // of this tag
  std::size_t lMatched = 0;     // characters of "xmlns"
  std::size_t lNamespaces = 0;
  std::size_t lBefore = 0;  // length of the pieces before this one
  std::size_t lOpened = 0;  // where the last "<" stands
  std::size_t lTypeBegin = 0;
  std::size_t lTypeEnd = 0;
};

}  // namespace ostrel::platform
