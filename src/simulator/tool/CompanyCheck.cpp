// The check runs in two stages. Names and IDs are checked in the file's XML, because the reader
// refuses a file with duplicates as a whole and could not tell which they are. References, balances
// and payments are checked in the company as it was read, its journal included: all balances are
// computed once more from nothing, by the same postings as in the engine, and compared.
#include "simulator/tool/CompanyCheck.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "platform/SystemError.h"
#include "simulator/company/CompanyReader.h"
#include "simulator/company/Draft.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Postings.h"
#include "simulator/company/Totals.h"
#include "simulator/values/Decimal.h"
#include "simulator/xml/XmlReader.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxElements = 16'000'000;
constexpr std::size_t kMostProblems = 100;

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string Told(const Kind& kind, const Element& object) {
  const bool isList = kind.category == Category::kList;
  const std::string_view name = isList ? FullNameOf(kind, object) : object.ChildText("RefNumber");
  const std::string_view id = object.ChildText(kind.IdField());
  return std::string(kind.name) + ' ' + Quoted(name.empty() ? id : name);
}

class Problems {
 public:
  explicit Problems(CompanyReport& report) : oReport(report) {}

  void Add(const std::string& problem) {
    if (oReport.problems.size() < kMostProblems) oReport.problems.push_back(FromUtf8(problem));
  }
  bool IsFull() const { return oReport.problems.size() >= kMostProblems; }

 private:
  CompanyReport& oReport;
};

// Files that were written by hand may leave the full name out.
std::string NameOf(const Kind& kind, const Element& object) {
  const std::string_view fullName = FullNameOf(kind, object);
  if (!fullName.empty()) return std::string(fullName);
  const Element* parent = object.Child("ParentRef");
  return JoinedName(parent ? parent->ChildText("FullName") : "", object.ChildText(kind.nameField));
}

// Checks the names and IDs of the file itself: the reader refuses duplicates without naming them.
void CheckNamesAndIds(const Element& root, Problems& problems) {
  std::unordered_set<std::string> ids;
  std::unordered_set<std::string> names;
  for (const Element& object : root.children) {
    const Kind* kind = FindKind(object.name);
    if (!kind) continue;
    const std::string id(object.ChildText(kind->IdField()));
    if (!id.empty() && !ids.insert(id).second) problems.Add("ID " + Quoted(id) + " is there twice");
    const std::string name = NameOf(*kind, object);
    if (kind->category != Category::kList || name.empty()) continue;
    const std::string_view space = kind->family.empty() ? kind->name : kind->family;
    const std::string key = std::string(space) + '\n' + ToUtf8(LowerCase(FromUtf8(name)));
    if (!names.insert(key).second) {
      problems.Add("the name " + Quoted(name) + " is there twice (" + std::string(space) + ")");
    }
  }
}

// Checks references, and the transactions to which payments were applied.
void CheckReferences(const Kind& kind, const Element& object, std::span<const Field> fields,
                     const std::string& told, const Company& company, Problems& problems) {
  for (const Element& child : object.children) {
    const Field* field =
        child.children.empty() ? nullptr : FindField(fields, child.name, Use::kRet);
    if (!field) continue;
    if (field->type != FieldType::kReference) {
      CheckReferences(kind, child, field->children, told, company, problems);
    } else if (!FindTarget(company, field->refers, child)) {
      const std::string_view id = child.ChildText("ListID");
      problems.Add(told + ": " + child.name + " leads to " +
                   Quoted(id.empty() ? child.ChildText("FullName") : id) + ", which is not there");
    }
    const bool pays = !kind.pays.empty() && child.Child("TxnID") && child.name != "LinkedTxn";
    if (pays && !FindById(company, KindsNamed(kind.pays), child.ChildText("TxnID"))) {
      problems.Add(told + " is applied to " + Quoted(child.ChildText("TxnID")) +
                   ", which is not there");
    }
  }
}

void CheckAllReferences(const Company& company, Problems& problems) {
  for (const Kind* kind : AllKinds()) {
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      if (problems.IsFull()) return;
      CheckReferences(*kind, object, kind->fields, Told(*kind, object), company, problems);
    }
  }
}

// What transactions move, and the attribute that says with how much an object began; where it is
// missing, that is not known.
struct Moved {
  std::string_view field;
  std::string_view began = {};
};
constexpr Moved kMoved[] = {{"Balance"},
                            {"TotalBalance"},
                            {"QuantityOnHand", kOpeningQuantity},
                            {"QuantityOnOrder"},
                            {"QuantityOnSalesOrder"}};

bool IsKnown(const Moved& moved, const Element& object) {
  return object.Child(moved.field) && (moved.began.empty() || object.Find(moved.began));
}

bool IsMoved(const Kind& kind) {
  return kind.category == Category::kList &&
         std::ranges::any_of(kMoved, [&](const Moved& moved) { return kind.Has(moved.field); });
}

// Computes all balances from nothing, as the transactions move them.
void Repost(const Company& company, Draft& draft) {
  for (const Kind* kind : AllKinds()) {
    if (!IsMoved(*kind)) continue;
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      Element& cleared = draft.Edit(*kind, object.ChildText("ListID"));
      for (const Moved& moved : kMoved) {
        if (!IsKnown(moved, object)) continue;
        cleared.Set(moved.field, moved.began.empty() ? "0" : *object.Find(moved.began));
      }
    }
  }
  for (const Kind* kind : AllKinds()) {
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      PostOpening(*kind, object, true, draft);
      Post(*kind, object, draft);
    }
  }
}

void CheckBalances(const Company& company, Problems& problems) {
  Draft draft(company);
  Repost(company, draft);
  for (const Kind* kind : AllKinds()) {
    if (!IsMoved(*kind)) continue;
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      const Element& reposted = *draft.Find(*kind, object.ChildText("ListID"));
      for (const Moved& moved : kMoved) {
        const std::string_view balance = moved.field;
        const bool isRight =
            Decimal::Of(object.ChildText(balance)) == Decimal::Of(reposted.ChildText(balance));
        if (isRight || !IsKnown(moved, object)) continue;
        problems.Add(Told(*kind, object) + ": " + std::string(balance) + " is " +
                     std::string(object.ChildText(balance)) + ", its transactions come to " +
                     std::string(reposted.ChildText(balance)));
      }
    }
  }
}

using Paid = std::map<std::string, Decimal, std::less<>>;  // by TxnID

Paid AllPaid(const Company& company) {
  Paid paid;
  for (const Kind* kind : AllKinds()) {
    if (kind->pays.empty()) continue;
    for (const auto& [key, payment] : company.List(*kind).InOrder()) {
      for (const Element& child : payment.children) {
        if (child.name != "AppliedToTxnRet") continue;
        paid[std::string(child.ChildText("TxnID"))] +=
            Decimal::Of(child.ChildText("Amount")) + Decimal::Of(child.ChildText("DiscountAmount"));
      }
    }
  }
  for (const std::string_view credits : {"CreditMemo", "VendorCredit"}) {
    for (const auto& [key, credit] : company.List(*FindKind(credits)).InOrder()) {
      for (const Element& child : credit.children) {
        if (child.name != "LinkedTxn" || child.ChildText("LinkType") != "AMTTYPE") continue;
        paid[std::string(child.ChildText("TxnID"))] +=
            Decimal::Of(child.ChildText("Amount")).Negated();
      }
    }
  }
  return paid;
}

void CheckPaid(const Company& company, Problems& problems) {
  const Paid paid = AllPaid(company);
  for (const Kind* kind : AllKinds()) {
    if (kind->sums.applied.empty()) continue;
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      const auto found = paid.find(object.ChildText("TxnID"));
      const Decimal sum = found == paid.end() ? Decimal() : found->second;
      const Decimal applied = Decimal::Of(object.ChildText(kind->sums.applied)).Negated();
      const Decimal open = TotalOf(*kind, object) - applied;
      if (applied != sum) {
        problems.Add(Told(*kind, object) + " is paid with " + applied.ToString(2) +
                     ", its payments come to " + sum.ToString(2));
      } else if (open != OpenAmountOf(*kind, object)) {
        problems.Add(Told(*kind, object) + ": what is open is not its total without payments");
      }
    }
  }
}

// What a transaction posts comes to nothing in all. Those that are written by hand are not asked.
void CheckTransactionsBalance(const Company& company, Problems& problems) {
  for (const Kind* kind : AllKinds()) {
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      if (!object.Find(kFixed)) continue;
      Decimal sum;
      ForEachEntry(*kind, object, company, [&](const Entry& entry) { sum += entry.amount; });
      if (sum.IsZero()) continue;
      problems.Add(Told(*kind, object) + ": its debits and credits differ by " + sum.ToString(2));
    }
  }
}

Text Summary(const Company& company) {
  std::string summary;
  for (const Kind* kind : AllKinds()) {
    const std::size_t count = CountOwn(company.List(*kind));
    if (count == 0) continue;
    if (!summary.empty()) summary += ", ";
    summary += std::to_string(count) + ' ' + std::string(kind->name);
  }
  return FromUtf8(summary.empty() ? "nothing" : summary);
}

void TellLeftOut(const CompanyFile& file, Problems& problems) {
  for (const LeftOut& leftOut : file.RecordsLeftOut()) {
    problems.Add("record " + std::to_string(leftOut.record.number) + " of the journal, at byte " +
                 std::to_string(leftOut.record.position) + ", is left out: it " +
                 std::string(leftOut.why));
  }
}

void CheckJournal(JournalState journal, Problems& problems) {
  if (journal == JournalState::kTorn) {
    problems.Add("the journal is damaged at its end; its whole records count");
  }
  if (journal == JournalState::kForeign) {
    problems.Add("the journal continues another company file and does not count");
  }
}

std::string AtLine(std::uint32_t line) { return "line " + std::to_string(line) + ": "; }

// Where the element at fault stands and what it is called; nothing when that is not known.
std::string PlaceOf(const Obstacle& obstacle, std::string_view bytes) {
  XmlDocument document;
  XmlPlaces places;
  if (obstacle.element.empty()) return {};
  if (ReadXmlBytes(bytes, kMaxElements, document, &places) != XmlFault::kNone) return {};
  std::size_t place = 1;  // behind the root
  std::size_t number = obstacle.number;
  for (const Element& child : document.root.children) {
    if (child.name != obstacle.element || number-- != 0) {
      place += CountElements(child);
      continue;
    }
    if (obstacle.child < child.children.size()) {
      ++place;
      for (std::size_t i = 0; i < obstacle.child; ++i) place += CountElements(child.children[i]);
    }
    return AtLine(places.elements.at(place)) + child.name + ": ";
  }
  return {};
}

void TellObstacle(std::string_view bytes, const Stamp& now, Problems& problems) {
  Obstacle obstacle;
  const bool readable = CompanyFromBytes(bytes, now, &obstacle).has_value();
  std::string problem = "QuickBooks cannot open this company";
  if (!readable) problem += ": " + PlaceOf(obstacle, bytes) + obstacle.why;
  problems.Add(problem);
}

// False, with the line where it ends, when the bytes cannot be read as XML.
bool CheckXml(std::string_view bytes, XmlDocument& document, Problems& problems) {
  const XmlFault fault = ReadXmlBytes(bytes, kMaxElements, document);
  if (fault == XmlFault::kNone) return true;
  XmlPlaces places;
  document = {};
  ReadXmlBytes(bytes, kMaxElements, document, &places);
  problems.Add(
      AtLine(places.fault) + "the company file " +
      (fault == XmlFault::kTooLarge ? "holds more than can be read" : "is not well-formed XML"));
  return false;
}

}  // namespace

CompanyReport CheckCompany(TextView path, CompanyStorage& storage, const Stamp& now) {
  CompanyReport report;
  Problems problems(report);
  std::string bytes;
  report.error = storage.Read(path, bytes);
  if (report.error != 0) return report;
  XmlDocument document;
  if (!CheckXml(bytes, document, problems)) return report;
  CheckNamesAndIds(document.root, problems);
  document = {};
  CompanyFile file{Text(path), storage};
  CompanyFile::Contents contents;
  const int unread = file.Read(contents);
  if (unread != 0 && unread != platform::kInvalidData) report.error = unread;
  CheckJournal(contents.journal, problems);
  int error = 0;
  const auto company = CompanyFromFile(file, now, error);
  TellLeftOut(file, problems);
  if (!company) {
    TellObstacle(bytes, now, problems);
    return report;
  }
  CheckAllReferences(*company, problems);
  CheckBalances(*company, problems);
  CheckPaid(*company, problems);
  CheckTransactionsBalance(*company, problems);
  report.summary = Summary(*company);
  return report;
}

}  // namespace ostrel::simulator
