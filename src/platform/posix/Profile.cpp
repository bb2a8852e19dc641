// The lines of a profile file are kept as they stand; a change replaces, inserts or removes whole
// lines and writes all of them to a file beside, which then takes the old one's place.
#include "platform/Profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "platform/posix/ErrorNumber.h"
#include "platform/posix/Path.h"

namespace ostrel::platform {
namespace {

constexpr std::int64_t kLongestProfile = 16 << 20;  // bytes; what is longer is no profile
constexpr std::string_view kBlanks = " \t\v\f\r\n\x1a";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

char Lower(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const bool capital =
      (byte >= 'A' && byte <= 'Z') || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7);
  return capital ? static_cast<char>(byte + 0x20) : c;
}

bool SameName(std::string_view a, std::string_view b) {
  a = Trim(a);
  b = Trim(b);
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

// Line by line, each with its line end.
std::vector<std::string_view> SplitLines(std::string_view bytes) {
  std::vector<std::string_view> lines;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
    lines.push_back(bytes.substr(0, end));
    bytes.remove_prefix(end);
  }
  return lines;
}

bool IsBlank(std::string_view line) { return Trim(line).empty(); }
bool IsComment(std::string_view line) { return Trim(line).starts_with(';'); }

std::optional<std::string_view> SectionName(std::string_view line) {
  line = Trim(line);
  const std::size_t end = line.rfind(']');
  if (!line.starts_with('[') || end == std::string_view::npos) return {};
  return line.substr(1, end - 1);
}

struct Entry {
  std::string_view name;
  std::optional<std::string_view> value;  // nothing in a line without "="
};

Entry ParseEntry(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {Trim(line), {}};
  return {Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// The lines of the first section of this name: [heading, end), or nothing.
struct SectionRange {
  std::size_t heading, end;
};

std::optional<SectionRange> FindSection(const std::vector<std::string_view>& lines,
                                        std::string_view section) {
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
std::size_t FindKey(const std::vector<std::string_view>& lines, SectionRange range,
                    std::string_view key) {
  for (std::size_t i = range.heading + 1; i < range.end; ++i) {
    const Entry entry = ParseEntry(lines[i]);
    if (entry.value && SameName(entry.name, key)) return i;
  }
  return range.end;
}

int ReadWhole(File& file, std::string& bytes) {
  const std::int64_t size = file.Size();
  if (size > kLongestProfile) return kInvalidData;
  bytes.resize(static_cast<std::size_t>(size));
  int error = 0;
  bytes.resize(file.ReadAt(0, bytes, error).value_or(0));
  return error;
}

// Empty when the file cannot be read, as a missing file is an empty one.
std::string ReadProfile(TextView path) {
  File file;
  std::string bytes;
  if (file.Open(path, FileAccess::kRead, FileCreation::kOpenExisting) != 0) return {};
  return ReadWhole(file, bytes) == 0 ? bytes : std::string();
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

// Whoever looks, or comes back after a crash, finds the old file or the new one. A link stays a
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

// Opens the file, lets `change` make the new bytes of the old lines, and replaces the file while
// nobody else can open it.
template <typename Change>
int Rewrite(TextView path, FileCreation creation, Change change) {
  File file;
  std::string bytes;
  int error = file.Open(path, FileAccess::kReadWrite, creation);
  if (error == 0) error = ReadWhole(file, bytes);
  if (error != 0) return error;
  const std::string changed = change(SplitLines(bytes));
  return changed == bytes ? 0 : ReplaceWhole(path, changed);
}

std::string Join(const std::vector<std::string_view>& lines) {
  std::string bytes;
  for (const std::string_view line : lines) bytes += line;
  return bytes;
}

void AppendLine(std::string& bytes, std::string_view line) {
  if (!bytes.empty() && bytes.back() != '\n') bytes += "\r\n";
  bytes.append(line).append("\r\n");
}

std::string WithLineAt(const std::vector<std::string_view>& lines, std::size_t at, std::size_t next,
                       std::string_view line) {
  std::string bytes = Join({lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(at)});
  AppendLine(bytes, line);
  return bytes += Join({lines.begin() + static_cast<std::ptrdiff_t>(next), lines.end()});
}

std::string WithoutLines(std::vector<std::string_view> lines, std::size_t from, std::size_t to) {
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(from),
              lines.begin() + static_cast<std::ptrdiff_t>(to));
  return Join(lines);
}

std::string WithValue(const std::vector<std::string_view>& lines, std::string_view section,
                      std::string_view key, std::string_view value) {
  const std::string pair = std::string(Trim(key)) + "=" + std::string(value);
  const auto range = FindSection(lines, section);
  if (!range) {
    std::string bytes = Join(lines);
    AppendLine(bytes, "[" + std::string(Trim(section)) + "]");
    AppendLine(bytes, pair);
    return bytes;
  }

  const std::size_t at = FindKey(lines, *range, key);
  if (at != range->end) {
    const std::string_view name = ParseEntry(lines[at]).name;
    return WithLineAt(lines, at, at + 1, std::string(name) + "=" + std::string(value));
  }
  std::size_t end = range->end;
  while (IsBlank(lines[end - 1])) --end;
  return WithLineAt(lines, end, end, pair);
}

std::string WithoutKey(const std::vector<std::string_view>& lines, std::string_view section,
                       std::string_view key) {
  const auto range = FindSection(lines, section);
  const std::size_t at = range ? FindKey(lines, *range, key) : 0;
  return range && at != range->end ? WithoutLines(lines, at, at + 1) : Join(lines);
}

}  // namespace

std::string ReadProfileValue(TextView path, std::string_view section, std::string_view key,
                             std::string_view fallback, std::size_t size) {
  const std::string bytes = ReadProfile(path);
  const auto lines = SplitLines(bytes);
  const auto range = FindSection(lines, section);
  const std::size_t at = range ? FindKey(lines, *range, key) : 0;
  std::string_view value = fallback.substr(0, fallback.find_last_not_of(' ') + 1);
  if (range && at != range->end) value = WithoutQuotes(*ParseEntry(lines[at]).value);
  return std::string(value.substr(0, size - 1));
}

std::string ReadProfileSection(TextView path, std::string_view section, std::size_t size) {
  const std::string bytes = ReadProfile(path);
  const auto lines = SplitLines(bytes);
  const auto range = FindSection(lines, section);
  std::string entries;
  for (std::size_t i = range ? range->heading + 1 : 0; range && i < range->end; ++i) {
    if (IsBlank(lines[i]) || IsComment(lines[i])) continue;
    const Entry entry = ParseEntry(lines[i]);
    entries += entry.name;
    if (entry.value) entries.append("=").append(*entry.value);
    entries += '\0';
  }
  if (entries.size() > size - 2) entries.resize(size - 2);
  return entries;
}

int WriteProfileValue(TextView path, std::string_view section, std::string_view key,
                      const std::string* value) {
  if (value == nullptr) {
    return Rewrite(path, FileCreation::kOpenExisting,
                   [&](const auto& lines) { return WithoutKey(lines, section, key); });
  }
  return Rewrite(path, FileCreation::kOpenAlways,
                 [&](const auto& lines) { return WithValue(lines, section, key, *value); });
}

int EraseProfileSection(TextView path, std::string_view section) {
  return Rewrite(path, FileCreation::kOpenExisting, [&](const auto& lines) {
    const auto range = FindSection(lines, section);
    return range ? WithoutLines(lines, range->heading, range->end) : Join(lines);
  });
}

}  // namespace ostrel::platform
