#include "clients/XmlText.h"

namespace ostrel {
namespace {

struct Entity {
  char16_t character;
  TextView reference;
};

constexpr Entity kEntities[] = {
    {u'&', u"&amp;"}, {u'<', u"&lt;"}, {u'>', u"&gt;"}, {u'"', u"&quot;"}, {u'\'', u"&apos;"},
};

struct HiddenWord {
  TextView word;
  TextView hidden;
};

constexpr HiddenWord kHiddenWords[] = {
    {u"QBFILENAME:", u"QBFILENAME&#58;"},
    {u"OPENQB:", u"OPENQB&#58;"},
    {u"CLOSEQB:", u"CLOSEQB&#58;"},
    {u"QUICKBOOKSINFO", u"QUICKBOOKSINF&#79;"},
};

bool IsLineEndOrTab(char32_t character) {
  return character == U'\t' || character == U'\n' || character == U'\r';
}

Text Reference(char32_t character) {
  return u"&#" + ToText(static_cast<std::int64_t>(character)) + u";";
}

// The character at this place, of two halves where it is one of those.
char32_t CharacterAt(TextView text, std::size_t place) {
  const char32_t first = text[place];
  if (first < 0xD800 || first > 0xDBFF || place + 1 == text.size()) return first;
  const char32_t second = text[place + 1];
  if (second < 0xDC00 || second > 0xDFFF) return first;
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

bool CanBeWritten(char32_t character) {
  if (character < U' ') return IsLineEndOrTab(character);
  return (character < 0xD800 || character > 0xDFFF) && character != 0xFFFE && character != 0xFFFF;
}

// The character as data; `character` can be written.
Text Escaped(char32_t character) {
  for (const Entity& entity : kEntities) {
    if (character == entity.character) return Text(entity.reference);
  }
  if (character < U' ' || character > U'~') return Reference(character);
  return Text(1, static_cast<char16_t>(character));
}

// The value of the attribute in a start tag; empty when it is not there.
std::string_view AttributeIn(std::string_view tag, std::string_view name) {
  const std::string opening = " " + std::string(name) + "=\"";
  const std::size_t at = tag.find(opening);
  if (at == std::string_view::npos) return {};
  const std::string_view value = tag.substr(at + opening.size());
  return value.substr(0, value.find('"'));
}

// A start tag up to its end; a > within a value is none.
std::string_view TagAt(std::string_view response, std::size_t place) {
  bool isQuoted = false;
  for (std::size_t end = place; end < response.size(); ++end) {
    if (response[end] == '"') isQuoted = !isQuoted;
    if (response[end] == '>' && !isQuoted) return response.substr(place, end - place);
  }
  return response.substr(place);
}

std::string_view NameOf(std::string_view tag) {
  return tag.substr(1, tag.find_first_of(" \t\r\n\xFE/", 1) - 1);
}

}  // namespace

std::optional<Text> EscapedForXml(TextView text) {
  Text escaped;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const char32_t character = CharacterAt(text, place);
    if (!CanBeWritten(character)) return std::nullopt;
    if (character > 0xFFFF) ++place;
    escaped += Escaped(character);
  }
  for (const auto& [word, hidden] : kHiddenWords) escaped = ReplaceAll(escaped, word, hidden);
  return escaped;
}

std::vector<MessageStatus> FailedMessages(std::string_view response) {
  std::vector<MessageStatus> failed;
  for (std::size_t place = response.find('<'); place != std::string_view::npos;
       place = response.find('<', place + 1)) {
    const std::string_view head =
        response.substr(place, response.find_first_of(" >", place) - place);
    if (!head.ends_with("Rs")) continue;
    const std::string_view tag = TagAt(response, place);
    if (AttributeIn(tag, "statusSeverity") != "Error") continue;
    failed.push_back({std::string(NameOf(tag)), std::string(AttributeIn(tag, "statusCode")),
                      std::string(AttributeIn(tag, "statusMessage"))});
  }
  return failed;
}

}  // namespace ostrel
