// The layout walks the text once, part by part, from one "<" to the next, and looks one part ahead:
// an element whose end tag follows its text stays on one line. A response file is written in pieces
// of 64 Ki characters, events handled between them. The blanks of indentation are counted, because
// a text of nested start tags would grow with the square of its length otherwise; when they are
// used up, the lines go on without any.
#include "gateway/XmlLayout.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "gateway/WholeFile.h"
#include "platform/EventLoop.h"
#include "util/CStringBuilder.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

constexpr std::size_t kIndentationStep = 3;
constexpr std::size_t kMostBlanks = 16 * 1024 * 1024;
constexpr std::int32_t kPieceCharacters = 64 * 1024;
constexpr std::size_t kRoomForPiece = kPieceCharacters + 4096;  // and for the line that fills it

// Which line breaks the text loses before it is laid out.
enum class Drop { kLf, kLfAndCrLf };

// Walks the parts of a text: each begins with a "<" and reaches to the next one. What comes before
// the first "<" is none. Two parts are valid at a time: the one handed out last, and the one
// before.
class Parts {
 public:
  Parts(TextView text, Drop drop) : bDropCr(drop == Drop::kLfAndCrLf), sRest(text) {
    sRest.remove_prefix(std::min(FindCharacter(text, u'<'), text.size()));
  }

  std::optional<TextView> Next() {
    if (sRest.empty()) return std::nullopt;
    const TextView part = TakePart();
    const std::size_t lineEnd = FindCharacter(part, u'\n');
    if (lineEnd == TextView::npos) return part;
    // The usual place of a line break is before the next "<": nothing has to be copied.
    return lineEnd + 1 == part.size() ? LineUpTo(part, lineEnd) : WithoutLineBreaks(part);
  }

 private:
  TextView TakePart() {
    const TextView part = sRest.substr(0, FindCharacter(sRest, u'<', 1));
    sRest.remove_prefix(part.size());
    return part;
  }

  TextView LineUpTo(TextView text, std::size_t lineEnd) const {
    const bool dropsCr = bDropCr && lineEnd > 0 && text[lineEnd - 1] == u'\r';
    return text.substr(0, dropsCr ? lineEnd - 1 : lineEnd);
  }

  TextView WithoutLineBreaks(TextView part) {
    Text& scratch = sScratch[bOddScratch];
    bOddScratch = !bOddScratch;
    scratch.clear();
    for (std::size_t end; (end = FindCharacter(part, u'\n')) != TextView::npos;) {
      scratch.append(LineUpTo(part, end));
      part.remove_prefix(end + 1);
    }
    return scratch.append(part);
  }

  bool bDropCr;
  TextView sRest;
  Text sScratch[2];
  bool bOddScratch = false;
};

bool IsEndTag(TextView part) { return part.starts_with(u"</"); }

bool StartTagHasBlank(TextView part) {
  return FindCharacter(part.substr(0, FindCharacter(part, u'>')), u' ') != TextView::npos;
}

// Kept: the whole part is compared, so that a prolog written in any other way indents what follows.
bool HasNoChildren(TextView part) {
  return part == u"<?xml version=\"1.0\" ?>" ||
         part == u"<!DOCTYPE QBXML PUBLIC '-//INTUIT//DTD QBXML QBD 1.0//EN' >" ||
         part.ends_with(u"/>");
}

// Gives each line to `print(indentation, part, endTag)`, `endTag` empty or the end tag that stands
// on the same line, until the text ends or `print` returns false.
template <typename Print>
void LayOut(TextView text, Drop drop, Print print) {
  Parts parts(text, drop);
  std::size_t indentation = 0;
  std::optional<TextView> part = parts.Next();
  while (part) {
    const std::optional<TextView> next = parts.Next();
    const bool isEndTag = IsEndTag(*part);
    const bool holdsOnlyText = !isEndTag && next && IsEndTag(*next);
    if (isEndTag) indentation -= std::min(indentation, kIndentationStep);
    // Kept: with attributes the end tag gets a line of its own, one level too shallow.
    const bool isOneLine = holdsOnlyText && !StartTagHasBlank(*part);
    if (!print(indentation, *part, isOneLine ? *next : TextView())) return;
    if (!isEndTag && !holdsOnlyText && !HasNoChildren(*part)) indentation += kIndentationStep;
    part = isOneLine ? parts.Next() : next;
  }
}

// Appends lines to a builder.
class LinePrinter {
 public:
  LinePrinter(CStringBuilder& lines, std::size_t textLength)
      : oLines(lines), lBlanksLeft(kMostBlanks + 4 * textLength) {}

  void Print(std::size_t indentation, TextView part, TextView endTag) {
    const std::size_t blanks = std::min(indentation, lBlanksLeft);
    lBlanksLeft -= blanks;
    oLines.AppendBlanks(static_cast<std::int32_t>(blanks));
    PrintPart(part);
    if (!endTag.empty()) PrintPart(endTag);
    oLines.Append(kCrLf);
  }

 private:
  void PrintPart(TextView part) {
    for (;;) {
      const std::size_t mark = FindCharacter(part, kAttributeMark);
      oLines.Append(part.substr(0, mark));
      if (mark == TextView::npos) return;
      oLines.Append(kCrLf);
      part.remove_prefix(mark + 1);
    }
  }

  CStringBuilder& oLines;
  std::size_t lBlanksLeft;
};

bool LayOutIntoFile(TextView response, WholeFile& file) {
  CStringBuilder lines;
  lines.Reserve(kRoomForPiece);
  LinePrinter printer(lines, response.size());
  bool isWritten = true;
  LayOut(response, Drop::kLf, [&](std::size_t indentation, TextView part, TextView endTag) {
    printer.Print(indentation, part, endTag);
    if (lines.Length() < kPieceCharacters) return true;
    isWritten = file.Write(std::move(lines).ToString());
    lines = CStringBuilder();
    lines.Reserve(kRoomForPiece);
    platform::DoEvents();
    return isWritten;
  });
  return isWritten && file.Write(std::move(lines).ToString());
}

}  // namespace

void FormatXmlText(Text& text) {
  CStringBuilder lines;
  lines.Reserve(text.size() + text.size() / 2);  // room for usual indentation
  LinePrinter printer(lines, text.size());
  LayOut(text, Drop::kLfAndCrLf, [&](std::size_t indentation, TextView part, TextView endTag) {
    printer.Print(indentation, part, endTag);
    return true;
  });
  text = std::move(lines).ToString();
}

bool WriteResponseFile(TextView response, WholeFile& file) {
  try {
    return LayOutIntoFile(response, file);
  } catch (...) {
    return false;  // out of memory: the file is not whole, as with any other failure
  }
}

bool WriteResponseFile(TextView response, TextView path) {
  try {
    WholeFile file(path);
    return file.Open() && WriteResponseFile(response, file) && file.PutInPlace();
  } catch (...) {
    return false;  // out of memory: the file is not there, as with any other failure
  }
}

}  // namespace ostrel
