#include "simulator/Journal.h"

#include <charconv>
#include <cstdio>

#include "simulator/Checksum.h"
#include "simulator/XmlReader.h"
#include "simulator/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kHeadBegin = "<?record ";
constexpr std::string_view kHeadEnd = "?>\n";
constexpr std::size_t kSizeDigits = 9;
constexpr std::size_t kChecksumDigits = 16;
constexpr std::size_t kHeadSize =
    kHeadBegin.size() + kSizeDigits + 1 + kChecksumDigits + kHeadEnd.size();
constexpr std::size_t kMaxElements = 1'000'000;

std::string Head(std::size_t size, std::uint64_t checksum) {
  char digits[24];
  std::snprintf(digits, sizeof digits, "%09zu", size);
  return std::string(kHeadBegin)
      .append(digits)
      .append(" ")
      .append(ChecksumText(checksum))
      .append(kHeadEnd);
}

std::string VersionElement(std::string_view name, const FileVersion& file) {
  XmlWriter xml(XmlForm::kFile);
  const Attribute attributes[] = {{"bytes", std::to_string(file.bytes)},
                                  {"checksum", ChecksumText(file.checksum)}};
  xml.Empty(name, attributes);
  return xml.Take();
}

std::string ChangesElement(const Changes& changes) {
  XmlWriter xml(XmlForm::kFile);
  xml.Open("Changes");
  for (const Change& change : changes) {
    const Attribute removed[] = {{"kind", std::string(change.kind->name)}, {"id", change.id}};
    if (change.object) {
      xml.Write(*change.object);
    } else {
      xml.Empty("Removed", removed);
    }
  }
  xml.Close();
  return xml.Take();
}

std::uint64_t Number(std::string_view digits, int base) {
  std::uint64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  return number;
}

std::string_view Value(const Element& element, std::string_view attribute) {
  const std::string* value = element.Find(attribute);
  return value ? std::string_view(*value) : std::string_view();
}

FileVersion VersionIn(const Element& element) {
  return {.bytes = Number(Value(element, "bytes"), 10),
          .checksum = Number(Value(element, "checksum"), 16)};
}

std::optional<Change> ChangeIn(Element element) {
  const bool removed = element.name == "Removed";
  const Kind* kind = FindKind(removed ? Value(element, "kind") : element.name);
  if (!kind) return std::nullopt;
  Change change{.kind = kind, .id = std::string(Value(element, "id")), .object = std::nullopt};
  if (!removed) {
    change.id = element.ChildText(kind->IdField());
    change.object = std::move(element);
  }
  return change.id.empty() ? std::nullopt : std::optional(std::move(change));
}

// False for what nobody here can carry out.
bool TakeChanges(Element& element, Journal& journal) {
  Changes& changes = journal.changes.emplace_back();
  for (Element& child : element.children) {
    auto change = ChangeIn(std::move(child));
    if (!change) return false;
    changes.push_back(*std::move(change));
  }
  return true;
}

bool TakeRecord(std::string_view xml, Journal& journal) {
  XmlDocument document;
  if (ReadXmlBytes(xml, kMaxElements, document) != XmlFault::kNone) return false;
  const std::string& name = document.root.name;
  const bool isFirst = !journal.continues;
  if (isFirst != (name == "Continues")) return false;
  journal.foldedInto.reset();
  if (isFirst) {
    journal.continues = VersionIn(document.root);
  } else if (name == "Folded") {
    journal.foldedInto = VersionIn(document.root);
  } else {
    return name == "Changes" && TakeChanges(document.root, journal);
  }
  return true;
}

struct WholeRecord {
  std::string_view xml;
  std::uint64_t checksum;
};

// The record at the front of the bytes; nothing when it is torn or damaged.
std::optional<WholeRecord> FirstRecord(std::string_view bytes, std::uint64_t before) {
  if (bytes.size() < kHeadSize) return std::nullopt;
  const std::uint64_t size = Number(bytes.substr(kHeadBegin.size(), kSizeDigits), 10);
  if (size > bytes.size() - kHeadSize) return std::nullopt;
  const std::string_view xml = bytes.substr(kHeadSize, static_cast<std::size_t>(size));
  const std::uint64_t checksum = Checksum(xml, before);
  const bool whole = bytes.starts_with(Head(xml.size(), checksum));
  return whole ? std::optional(WholeRecord{xml, checksum}) : std::nullopt;
}

}  // namespace

FileVersion VersionOf(std::string_view file) {
  return {.bytes = file.size(), .checksum = Checksum(file)};
}

std::string JournalWriter::Continues(const FileVersion& file) {
  return Record(VersionElement("Continues", file));
}

std::string JournalWriter::Changed(const Changes& changes) {
  return Record(ChangesElement(changes));
}

std::string JournalWriter::Folded(const FileVersion& file) {
  return Record(VersionElement("Folded", file));
}

std::string JournalWriter::Record(std::string_view xml) {
  lChecksum = Checksum(xml, lChecksum);
  return Head(xml.size(), lChecksum).append(xml);
}

std::optional<Journal> ReadJournal(std::string_view bytes) {
  Journal journal;
  std::uint64_t checksum = 0;
  while (const auto record = FirstRecord(bytes, checksum)) {
    if (!TakeRecord(record->xml, journal)) return std::nullopt;
    checksum = record->checksum;
    const std::size_t size = kHeadSize + record->xml.size();
    journal.wholeBytes += size;
    bytes.remove_prefix(size);
  }
  journal.writer = JournalWriter(checksum);
  return journal;
}

}  // namespace ostrel::simulator
