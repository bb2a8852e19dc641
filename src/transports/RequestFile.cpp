#include "transports/RequestFile.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "platform/SystemError.h"

namespace ostrel {
namespace {

constexpr std::int64_t kPieceBytes = 64 * 1024;

// Appends lines that end in CR LF, LF or CR alone; the pieces may part a CR from its LF.
class LineCollector {
 public:
  explicit LineCollector(Text& text) : sText(text) {}

  void Append(TextView piece) {
    if (bAfterCr && piece.starts_with(u'\n')) piece.remove_prefix(1);
    if (piece.empty()) return;
    bAfterCr = piece.back() == u'\r';
    while (!piece.empty()) {
      const std::size_t length = LineLength(piece);
      sText.append(piece.substr(0, length));
      if (length == piece.size()) return;
      sText.append(kCrLf);
      piece.remove_prefix(length + (piece.substr(length, 2) == kCrLf ? 2 : 1));
    }
  }

  void EndLastLine() {
    if (!sText.ends_with(kCrLf)) sText.append(kCrLf);
  }

 private:
  static std::size_t LineLength(TextView text) {
    const auto end =
        std::find_if(text.begin(), text.end(), [](char16_t c) { return c == u'\r' || c == u'\n'; });
    return static_cast<std::size_t>(end - text.begin());
  }

  Text& sText;
  bool bAfterCr = false;
};

}  // namespace

int RequestFile::Open() { return oFile.OpenFile({}, u"R") ? 0 : Error(); }

int RequestFile::Read(Text& request, std::size_t longest) {
  const auto size = static_cast<std::uint64_t>(oFile.FileSize());
  request.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(size, longest)) + kCrLf.size());
  LineCollector lines(request);
  for (Text piece;;) {
    oFile.ReadData(piece, -1, kPieceBytes);
    if (Error() == platform::kOutOfMemory) throw std::bad_alloc();
    if (Error() != 0) return Error();
    if (piece.empty()) break;
    lines.Append(piece);
    if (request.size() > longest) throw std::length_error("request file");
  }
  lines.EndLastLine();
  return 0;
}

int RequestFile::Delete() {
  oFile.DeleteFile();
  return Error();
}

int RequestFile::Error() const {
  Text message;
  std::int32_t number = 0;
  oFile.ReadErrorHandler(message, number);
  return number;
}

}  // namespace ostrel
