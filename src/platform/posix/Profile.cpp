// A profile file is decoded as a whole, from the code page or from UTF-16, and encoded again the
// same way: both lose nothing, so that its lines are kept as they stand. A change replaces, inserts
// or removes whole lines and writes all of them to a file beside, which then takes the old one's
// place.
#include "platform/Profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>
#include <vector>

#include "platform/CodePage.h"
#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/Path.h"

namespace ostrel::platform {
namespace {

constexpr std::int64_t kLongestProfile = 16 << 20;  // bytes; what is longer is no profile
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr TextView kBlanks = u" \t\v\f\r\n\x1a";
constexpr auto kCodePage = Windows1252();

// --- bytes and text

char ByteOf(char16_t character) {
  if (character < 0x80) return static_cast<char>(character);
  const auto found = std::find(kCodePage.begin(), kCodePage.end(), character);
  return found == kCodePage.end() ? '?' : static_cast<char>(found - kCodePage.begin());
}

Text TextOf(std::string_view bytes) {
  Text text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](char byte) { return kCodePage[static_cast<unsigned char>(byte)]; });
  return text;
}

std::string BytesOf(TextView text) {
  std::string bytes(text.size(), '\0');
  std::transform(text.begin(), text.end(), bytes.begin(), ByteOf);
  return bytes;
}

// An odd byte at the end is dropped.
Text TextOfUtf16(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    text.push_back(static_cast<char16_t>(high << 8 | low));
  }
  return text;
}

struct Contents {
  Text text;
  bool isUtf16 = false;
};

Contents Decode(std::string_view bytes) {
  if (!bytes.starts_with(kUtf16Mark)) return {TextOf(bytes)};
  return {TextOfUtf16(bytes.substr(kUtf16Mark.size())), true};
}

std::string Encode(TextView text, bool isUtf16) {
  if (!isUtf16) return BytesOf(text);
  std::string bytes(kUtf16Mark);
  for (const char16_t c : text) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  return bytes;
}

// --- lines

TextView Trim(TextView text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == TextView::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool SameName(TextView a, TextView b) { return LowerCase(Trim(a)) == LowerCase(Trim(b)); }

// Line by line, each with its line end.
std::vector<TextView> SplitLines(TextView text) {
  std::vector<TextView> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(u'\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

bool IsBlank(TextView line) { return Trim(line).empty(); }
bool IsComment(TextView line) { return Trim(line).starts_with(u';'); }

std::optional<TextView> SectionName(TextView line) {
  line = Trim(line);
  const std::size_t end = line.rfind(u']');
  if (!line.starts_with(u'[') || end == TextView::npos) return {};
  return line.substr(1, end - 1);
}

struct Entry {
  TextView name;
  std::optional<TextView> value;  // nothing in a line without "="
};

Entry ParseEntry(TextView line) {
  const std::size_t equals = line.find(u'=');
  if (equals == TextView::npos) return {Trim(line), {}};
  return {Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
}

TextView WithoutQuotes(TextView value) {
  const bool quoted = value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// The lines of the first section of this name: [heading, end), or nothing.
struct SectionRange {
  std::size_t heading, end;
};

std::optional<SectionRange> FindSection(const std::vector<TextView>& lines, TextView section) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto name = SectionName(lines[i]);
    if (!name || !SameName(*name, section)) continue;
    std::size_t end = i + 1;
    while (end < lines.size() && !SectionName(lines[end])) ++end;
    return SectionRange{i, end};
  }
  return {};
}

// Index of the first line with a value of this key, or range.end.
std::size_t FindKey(const std::vector<TextView>& lines, SectionRange range, TextView key) {
  for (std::size_t i = range.heading + 1; i < range.end; ++i) {
    const Entry entry = ParseEntry(lines[i]);
    if (entry.value && SameName(entry.name, key)) return i;
  }
  return range.end;
}

// --- files

bool IsMissing(int error) { return error == kFileNotFound || error == kPathNotFound; }

int OpenAndRead(TextView path, std::string& bytes) {
  File file;
  const int error = file.Open(path, FileAccess::kRead, FileCreation::kOpenExisting);
  return error == 0 ? ReadFileContents(file, kLongestProfile, bytes) : error;
}

// A missing file is an empty one. Most other failures pass: another program has the file for a
// moment, or the process has no descriptor left.
int ReadProfile(TextView path, Contents& contents) {
  constexpr std::chrono::milliseconds kPause(20);
  constexpr int kAttempts = 25;
  std::string bytes;
  int error = OpenAndRead(path, bytes);
  for (int attempt = 1; error != 0 && !IsMissing(error) && attempt < kAttempts; ++attempt) {
    std::this_thread::sleep_for(kPause);
    error = OpenAndRead(path, bytes);
  }
  if (IsMissing(error)) return 0;
  if (error == 0) contents = Decode(bytes);
  return error;
}

// 0, or kMoreData when there were more bytes.
int CutTo(std::size_t most, std::string& bytes) {
  if (bytes.size() <= most) return 0;
  bytes.resize(most);
  return kMoreData;
}

int WriteAllTo(int descriptor, std::string_view bytes, mode_t mode) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return LastErrorNumber();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return fchmod(descriptor, mode) == 0 && fsync(descriptor) == 0 ? 0 : LastErrorNumber();
}

// A reader, also after a crash, finds the old file or the new one. A link stays a
// link: the file that it names is the one replaced.
int ReplaceWhole(TextView path, std::string_view bytes) {
  std::error_code failed;
  const std::string target = std::filesystem::canonical(ResolveFile(path), failed).string();
  struct stat status;
  if (failed || stat(target.c_str(), &status) != 0) return LastErrorNumber();

  std::string beside = target + "." + std::string(6, 'X');
  const int descriptor = mkostemp(beside.data(), O_CLOEXEC);
  if (descriptor < 0) return LastErrorNumber();
  int error = WriteAllTo(descriptor, bytes, status.st_mode & 07777);
  close(descriptor);
  if (error == 0 && rename(beside.c_str(), target.c_str()) != 0) error = LastErrorNumber();
  if (error != 0) unlink(beside.c_str());
  return error;
}

// Opens the file, lets `change` make the new text of the old lines, and replaces the file while
// nobody else can open it.
template <typename Change>
int Rewrite(TextView path, FileCreation creation, Change change) {
  File file;
  std::string bytes;
  int error = file.Open(path, FileAccess::kReadWrite, creation);
  if (error == 0) error = ReadFileContents(file, kLongestProfile, bytes);
  if (error != 0) return error;
  const Contents contents = Decode(bytes);
  const Text changed = change(SplitLines(contents.text));
  return changed == contents.text ? 0 : ReplaceWhole(path, Encode(changed, contents.isUtf16));
}

Text Join(const std::vector<TextView>& lines) {
  Text text;
  for (const TextView line : lines) text += line;
  return text;
}

void AppendLine(Text& text, TextView line) {
  if (!text.empty() && text.back() != u'\n') text += kCrLf;
  text.append(line).append(kCrLf);
}

Text WithLineAt(const std::vector<TextView>& lines, std::size_t at, std::size_t next,
                TextView line) {
  Text text = Join({lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(at)});
  AppendLine(text, line);
  return text += Join({lines.begin() + static_cast<std::ptrdiff_t>(next), lines.end()});
}

Text WithoutLines(std::vector<TextView> lines, std::size_t from, std::size_t to) {
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(from),
              lines.begin() + static_cast<std::ptrdiff_t>(to));
  return Join(lines);
}

Text WithValue(const std::vector<TextView>& lines, TextView section, TextView key, TextView value) {
  const auto pair = [value](TextView name) { return Text(name).append(u"=").append(value); };
  const auto range = FindSection(lines, section);
  if (!range) {
    Text text = Join(lines);
    AppendLine(text, Text(u"[").append(Trim(section)).append(u"]"));
    AppendLine(text, pair(Trim(key)));
    return text;
  }

  const std::size_t at = FindKey(lines, *range, key);
  if (at != range->end) return WithLineAt(lines, at, at + 1, pair(ParseEntry(lines[at]).name));
  std::size_t end = range->end;
  while (IsBlank(lines[end - 1])) --end;
  return WithLineAt(lines, end, end, pair(Trim(key)));
}

Text WithoutKey(const std::vector<TextView>& lines, TextView section, TextView key) {
  const auto range = FindSection(lines, section);
  const std::size_t at = range ? FindKey(lines, *range, key) : 0;
  return range && at != range->end ? WithoutLines(lines, at, at + 1) : Join(lines);
}

}  // namespace

int ReadProfileValue(TextView path, std::string_view section, std::string_view key,
                     std::string_view fallback, std::size_t size, std::string& value) {
  value = fallback.substr(0, std::min(fallback.find_last_not_of(' ') + 1, size - 1));
  Contents contents;
  if (const int error = ReadProfile(path, contents)) return error;
  const auto lines = SplitLines(contents.text);
  const auto range = FindSection(lines, TextOf(section));
  const std::size_t at = range ? FindKey(lines, *range, TextOf(key)) : 0;
  if (range && at != range->end) value = BytesOf(WithoutQuotes(*ParseEntry(lines[at]).value));
  return CutTo(size - 1, value);
}

int ReadProfileSection(TextView path, std::string_view section, std::size_t size,
                       std::string& entries) {
  entries.clear();
  Contents contents;
  if (const int error = ReadProfile(path, contents)) return error;
  const auto lines = SplitLines(contents.text);
  const auto range = FindSection(lines, TextOf(section));
  for (std::size_t i = range ? range->heading + 1 : 0; range && i < range->end; ++i) {
    if (IsBlank(lines[i]) || IsComment(lines[i])) continue;
    const Entry entry = ParseEntry(lines[i]);
    entries += BytesOf(entry.name);
    if (entry.value) entries.append("=").append(BytesOf(*entry.value));
    entries += '\0';
  }
  return CutTo(size - 2, entries);
}

int WriteProfileValue(TextView path, std::string_view section, std::string_view key,
                      const std::string* value) {
  if (value == nullptr) {
    return Rewrite(path, FileCreation::kOpenExisting, [&](const auto& lines) {
      return WithoutKey(lines, TextOf(section), TextOf(key));
    });
  }
  return Rewrite(path, FileCreation::kOpenAlways, [&](const auto& lines) {
    return WithValue(lines, TextOf(section), TextOf(key), TextOf(*value));
  });
}

int EraseProfileSection(TextView path, std::string_view section) {
  return Rewrite(path, FileCreation::kOpenExisting, [&](const auto& lines) {
    const auto range = FindSection(lines, TextOf(section));
    return range ? WithoutLines(lines, range->heading, range->end) : Join(lines);
  });
}

}  // namespace ostrel::platform
