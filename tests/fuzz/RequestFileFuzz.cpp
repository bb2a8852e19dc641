// Request files of any bytes: lines that end in CR LF, LF or CR, 8-bit text or UTF-16 behind its
// mark. What the transport reads is what a simple reader makes of the bytes.
#include <optional>
#include <stdexcept>

#include "tests/fuzz/FuzzFolder.h"
#include "tests/fuzz/FuzzTarget.h"
#include "transports/RequestFile.h"
#include "util/CodePage.h"

namespace ostrel {
namespace {

using fuzz::Require;

constexpr TextView kName = u"request.osl";
constexpr std::size_t kLongest = 4000;

Text Decoded(std::string_view bytes) {
  if (!bytes.starts_with("\xFF\xFE")) return BytesToText(bytes);
  Text text;
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    text.push_back(static_cast<char16_t>(high << 8 | low));
  }
  return text;
}

Text Lines(TextView text) {
  Text lines;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool endsInCrLf = text.substr(i, 2) == kCrLf;
    if (endsInCrLf || text[i] == u'\r' || text[i] == u'\n') {
      lines.append(kCrLf);
      i += endsInCrLf ? 1 : 0;
    } else {
      lines.push_back(text[i]);
    }
  }
  if (!lines.ends_with(kCrLf)) lines.append(kCrLf);
  return lines;
}

// Nothing: it was too long.
std::optional<Text> ReadByTransport() {
  RequestFile file(fuzz::Folder().Path(kName));
  Require(file.Open() == 0, "the file can be opened");
  try {
    Text request;
    Require(file.Read(request, kLongest) == 0, "the file can be read");
    return request;
  } catch (const std::length_error&) {
    return std::nullopt;
  }
}

void ReadLineByLine() {
  cFileIO file;
  file.FullFileName(fuzz::Folder().Path(kName));
  Require(file.OpenFile({}, u"R"), "the file can be opened");
  for (Text line; !file.IsEOF();) {
    const std::int64_t before = file.CurrentPos();
    file.InputLine(line);
    Require(file.CurrentPos() > before, "reading lines comes to an end");
    Require(!Contains(line, u"\n"), "a line has no line end in it");
  }
}

void TryFile(std::string_view bytes) {
  fuzz::Folder().Write(kName, bytes);
  const Text expected = Lines(Decoded(bytes));
  const std::optional<Text> request = ReadByTransport();
  Require(request ? *request == expected : expected.size() > kLongest,
          "a request is what its file says");
  ReadLineByLine();
}

const fuzz::Registered kTarget("requestfile", TryFile);

}  // namespace
}  // namespace ostrel
