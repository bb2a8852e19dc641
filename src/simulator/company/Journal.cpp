// The checksum of a record covers its bytes and the checksum before it, so that it proves the whole
// journal up to its own end: a record that was lost, repeated or moved is noticed like one that was
// damaged. Reading goes from head to head. Where a record is damaged, the reader looks for the next
// head and lets the checksum of that record decide how much of the damaged one can still count.
#include "simulator/company/Journal.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "simulator/xml/XmlReader.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kHeadBegin = "<?record ";
constexpr std::string_view kHeadEnd = "?>\n";
constexpr std::size_t kSizeDigits = 9;
constexpr std::size_t kChecksumDigits = 16;
constexpr std::size_t kHeadSize =
    kHeadBegin.size() + kSizeDigits + 1 + kChecksumDigits + kHeadEnd.size();
constexpr std::string_view kDamaged = "is damaged";
constexpr std::string_view kUnknown = "says what cannot be carried out";

// Each step can be undone: two texts that differ in one word only have different sums.
std::uint64_t Mixed(std::uint64_t sum, std::uint64_t word) {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  sum = (sum ^ word) * kOdd;
  return sum ^ (sum >> 32);
}

std::string HeadText(std::size_t size, std::uint64_t checksum) {
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

// The changes of a record; nothing when it holds a change that this program does not know.
std::optional<Changes> ChangesIn(Element& element) {
  Changes changes;
  for (Element& child : element.children) {
    auto change = ChangeIn(std::move(child));
    if (!change) return std::nullopt;
    changes.push_back(*std::move(change));
  }
  return changes;
}

struct Head {
  std::size_t size = 0;  // of the record's XML, in bytes
  std::uint64_t checksum = 0;
};

// The head at the front of the bytes; nothing when it is torn or damaged, or longer than they are.
std::optional<Head> HeadAt(std::string_view bytes) {
  if (bytes.size() < kHeadSize) return std::nullopt;
  const auto size =
      static_cast<std::size_t>(Number(bytes.substr(kHeadBegin.size(), kSizeDigits), 10));
  const std::uint64_t checksum =
      Number(bytes.substr(kHeadBegin.size() + kSizeDigits + 1, kChecksumDigits), 16);
  const bool whole =
      bytes.starts_with(HeadText(size, checksum)) && size <= bytes.size() - kHeadSize;
  return whole ? std::optional(Head{size, checksum}) : std::nullopt;
}

// Takes record after record. Behind one that is damaged it goes on with the next head that it
// finds: no text in a record looks like a head, since "<" stands there only as "&lt;".
class JournalReader {
 public:
  explicit JournalReader(std::string_view bytes) : sBytes(bytes) {}

  Journal Read() {
    while (TakeNext()) {
    }
    if (!bDamaged) oJournal.wholeBytes = oPlace.position;
    oJournal.endBytes = oPlace.position;
    oJournal.writer = JournalWriter(oChecksum.value_or(0));
    return std::move(oJournal);
  }

 private:
  std::string_view Rest(std::size_t from) const { return sBytes.substr(from); }
  std::string_view XmlAt(std::size_t position, const Head& head) const {
    return sBytes.substr(position + kHeadSize, head.size);
  }

  bool TakeNext() {
    const auto head = HeadAt(Rest(oPlace.position));
    if (!head) return PassDamage(std::nullopt);
    const std::string_view xml = XmlAt(oPlace.position, *head);
    if (oChecksum && Checksum(xml, *oChecksum) != head->checksum) return PassDamage(head->checksum);
    Take(xml);
    Advance(kHeadSize + xml.size(), head->checksum);
    return true;
  }

  // The record here is damaged; false when no other follows. The checksum of the next one covers
  // this one too, and so proves what is left of it: its XML, or at least its checksum. Where it
  // proves neither, the next one counts if it can be read.
  bool PassDamage(std::optional<std::uint64_t> claimed) {
    const std::size_t here = oPlace.position;
    std::size_t next = here;
    std::optional<Head> head;
    while (!head) {
      next = sBytes.find(kHeadBegin, next + 1);
      if (next == std::string_view::npos) return false;
      head = HeadAt(Rest(next));
    }
    if (!bDamaged) oJournal.wholeBytes = here;
    bDamaged = true;
    const auto proves = [&](std::uint64_t before) {
      return Checksum(XmlAt(next, *head), before) == head->checksum;
    };
    const std::size_t size = next - here;
    const std::string_view xml =
        size > kHeadSize ? sBytes.substr(here + kHeadSize, size - kHeadSize) : std::string_view();
    const std::uint64_t checksum = Checksum(xml, oChecksum.value_or(0));
    if (oChecksum && proves(checksum)) {
      Take(xml);
      claimed = checksum;
    } else {
      LeaveOut(kDamaged);
      if (claimed && !proves(*claimed)) claimed.reset();
    }
    Advance(size, claimed);
    return true;
  }

  void Take(std::string_view xml) {
    XmlDocument document;
    if (ReadXmlBytes(xml, RecordLimits().elements, document) != XmlFault::kNone) {
      return LeaveOut(kDamaged);
    }
    oJournal.foldedInto.reset();
    Element& record = document.root;
    const bool isFirst = oPlace.number == 1;
    if (isFirst != (record.name == "Continues")) return LeaveOut(kUnknown);
    if (isFirst) {
      oJournal.continues = VersionIn(record);
    } else if (record.name == "Folded") {
      oJournal.foldedInto = VersionIn(record);
    } else {
      TakeChanges(record);
    }
  }

  void TakeChanges(Element& record) {
    auto changes = record.name == "Changes" ? ChangesIn(record) : std::nullopt;
    if (!changes) return LeaveOut(kUnknown);
    oJournal.changes.push_back(*std::move(changes));
    oJournal.places.push_back(oPlace);
  }

  void LeaveOut(std::string_view why) { oJournal.leftOut.push_back({oPlace, why}); }

  void Advance(std::size_t bytes, std::optional<std::uint64_t> checksum) {
    oPlace.position += bytes;
    ++oPlace.number;
    oChecksum = checksum;
  }

  std::string_view sBytes;
  Journal oJournal;
  RecordPlace oPlace;                          // of the next record
  std::optional<std::uint64_t> oChecksum = 0;  // over all before it; nothing: it cannot be told
  bool bDamaged = false;
};

}  // namespace

std::uint64_t Checksum(std::string_view bytes, std::uint64_t before) {
  std::uint64_t sum = Mixed(before, bytes.size());
  while (!bytes.empty()) {
    std::uint64_t word = 0;
    const std::size_t count = std::min(bytes.size(), sizeof word);
    std::memcpy(&word, bytes.data(), count);
    sum = Mixed(sum, word);
    bytes.remove_prefix(count);
  }
  return sum;
}

std::string ChecksumText(std::uint64_t checksum) {
  char text[24];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(checksum));
  return text;
}

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
  return HeadText(xml.size(), lChecksum).append(xml);
}

Journal ReadJournal(std::string_view bytes) { return JournalReader(bytes).Read(); }

std::size_t CountElements(const Changes& changes) {
  std::size_t count = 1;
  for (const Change& change : changes) count += change.object ? CountElements(*change.object) : 1;
  return count;
}

}  // namespace ostrel::simulator
