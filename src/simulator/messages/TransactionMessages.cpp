// Transactions are added, modified and deleted in a draft, which is committed as a whole or
// dropped. A modification first takes the old transaction out of the books (its postings are
// reversed, its payments taken back) and then enters the new one like an addition, so that both
// ways share one computation. Lines keep their identity through their TxnLineID; new ones come with
// -1.
#include <algorithm>
#include <unordered_map>

#include "simulator/company/CustomFields.h"
#include "simulator/company/Defaults.h"
#include "simulator/company/Deletions.h"
#include "simulator/company/Draft.h"
#include "simulator/company/Intake.h"
#include "simulator/company/Lines.h"
#include "simulator/company/Links.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Orders.h"
#include "simulator/company/Payments.h"
#include "simulator/company/Postings.h"
#include "simulator/company/References.h"
#include "simulator/company/Totals.h"
#include "simulator/company/Voiding.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/LongWork.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

// Drops the values of a line that follow from its item or its amount when that changes; they are
// computed anew.
void ForgetComputed(Element& line, const Element& given, std::span<const Field> fields,
                    bool newItem) {
  const bool newAmount = given.Child("Amount") != nullptr;
  bool newPrice = false;
  for (const Field& field : fields) {
    const bool isPrice = field.type == FieldType::kPrice || field.type == FieldType::kPercent;
    const bool isGiven = given.Child(field.name) != nullptr;
    newPrice = newPrice || (isGiven && (isPrice || field.type == FieldType::kQuantity));
    const bool replaced =
        isPrice && std::ranges::any_of(fields, [&](const Field& other) {
          return field.either != 0 && other.either == field.either && given.Child(other.name);
        });
    const bool follows = newItem && !field.source.reference.empty();
    if (replaced || follows || (isPrice && newAmount)) line.Drop(field.name);
  }
  if (newItem || newPrice) line.Drop("Amount");
}

// The lines of a name by their IDs. Each can be taken once.
using Lines = std::unordered_map<std::string, Element*>;

Lines LinesOf(Element& object, std::string_view name) {
  Lines lines;
  for (Element& child : object.children) {
    if (child.name == name) lines.emplace(child.ChildText("TxnLineID"), &child);
  }
  return lines;
}

bool NamesAnother(const Element* reference, const Element* before) {
  if (!reference) return false;
  return !before || reference->ChildText("ListID") != before->ChildText("ListID");
}

std::optional<Status> ModifyLines(std::span<const Field> fields, Element& object, Element& given,
                                  const Company& company);

std::optional<Status> ModifyLine(Lines& before, const Element& given, const Field& field,
                                 const Company& company, std::vector<Element>& lines) {
  const std::string id(given.ChildText("TxnLineID"));
  Element line{.name = std::string(field.name)};
  bool fresh = id == "-1";
  if (!fresh) {
    const auto found = before.find(id);
    if (found == before.end()) return NotFound(id);
    line = std::move(*found->second);
    found->second->name.clear();
    before.erase(found);
    fresh = NamesAnother(given.Child("ItemRef"), line.Child("ItemRef"));
    ForgetComputed(line, given, field.children, fresh);
    if (fresh) line.attributes.clear();
    if (given.Child("Quantity")) line.DropAttribute("cost");
  }
  Element named = given;
  if (IsGroup(field.name)) {
    if (NamesAnother(given.Child("ItemGroupRef"), line.Child("ItemGroupRef"))) {
      line.children.clear();
    }
    if (auto status = ModifyLines(field.children, line, named, company)) return status;
  }
  NameAsHeld(named, field.children, Use::kMod);
  Merge(line, named, field.children);
  if (fresh) FillIn(line, field.children, company);
  lines.push_back(std::move(line));
  return std::nullopt;
}

// A message that names any line of a sort names all that are to stay; the others are deleted.
std::optional<Status> ModifyLines(std::span<const Field> fields, Element& object, Element& given,
                                  const Company& company) {
  for (const Field& field : fields) {
    if (field.type != FieldType::kLine || !given.Child(field.inMod)) continue;
    std::vector<Element> lines;
    Lines before = LinesOf(object, field.name);
    for (const Element& child : given.children) {
      if (child.name != field.inMod) continue;
      Breathe();
      if (auto status = ModifyLine(before, child, field, company, lines)) return status;
    }
    // ModifyLine has removed the names of the lines that it took.
    object.Drop("");
    object.Drop(field.name);
    std::ranges::move(lines, std::back_inserter(object.children));
    given.Drop(field.inMod);
  }
  return std::nullopt;
}

// Debits and credits are modified by one sort of element, which may turn one into the other.
std::optional<Status> ModifyJournal(const Kind& kind, Element& object, Element& given) {
  constexpr std::string_view kDebit = "JournalDebitLine", kCredit = "JournalCreditLine";
  if (!given.Child("JournalLineMod")) return std::nullopt;
  const Field& field = *FindField(kind.fields, kDebit, Use::kRet);
  std::vector<Element> lines;
  for (const Element& child : given.children) {
    if (child.name != "JournalLineMod") continue;
    Breathe();
    const std::string_view id = child.ChildText("TxnLineID");
    Element line{.name = std::string(kDebit)};
    if (id != "-1") {
      const auto found = std::ranges::find_if(object.children, [&](const Element& held) {
        return (held.name == kDebit || held.name == kCredit) && held.ChildText("TxnLineID") == id;
      });
      if (found == object.children.end()) return NotFound(id);
      line = *found;
    }
    if (const Element* type = child.Child("JournalLineType")) {
      line.name = type->text == "Debit" ? kDebit : kCredit;
    }
    Element named = child;
    named.Drop("JournalLineType");
    Merge(line, named, field.children);
    lines.push_back(std::move(line));
  }
  object.Drop(kDebit);
  object.Drop(kCredit);
  std::ranges::move(lines, std::back_inserter(object.children));
  given.Drop("JournalLineMod");
  return std::nullopt;
}

void ClearLines(Element& object, const Element& given) {
  if (IsTrue(given.ChildText("ClearExpenseLines"))) object.Drop("ExpenseLineRet");
  if (!IsTrue(given.ChildText("ClearItemLines"))) return;
  object.Drop("ItemLineRet");
  object.Drop("ItemGroupLineRet");
}

// A line may be posted to another account than its item's.
void KeepOverride(Element& line) {
  const Element* account = line.Child("OverrideItemAccountRef");
  if (account) line.SetAttribute("account", account->ChildText("ListID"));
}

// Enters a transaction into the books: its totals, its payments and its postings.
std::optional<Status> Enter(const Call& call, Draft& draft, Element& object,
                            const Applications& applications, const std::vector<Credit>& credits) {
  const Kind& kind = call.OfKind();
  Numbers& numbers = call.company.NewNumbers();
  if (auto status = FindLack(kind, object)) return status;
  if (auto status = ComputeTotals(kind, object, call.company.Data(), numbers, call.now)) {
    return status;
  }
  if (!kind.pays.empty()) {
    if (auto status = ApplyPayment(kind, object, applications, call.now, draft)) return status;
  }
  WorkOut(kind, object, draft);
  FixAccounts(kind, object, numbers, call.now, draft);
  Post(kind, object, draft);
  CarryOut(kind, object, call.now, draft);
  draft.Put(kind, object);
  return SetCredits(kind, object.ChildText("TxnID"), credits, call.now, draft);
}

// Takes a transaction out of the books.
void Leave(const Kind& kind, const Element& object, const Stamp& now, Draft& draft) {
  Reverse(kind, object, draft);
  if (!kind.pays.empty()) TakeBackPayment(kind, object, now, draft);
  TakeBackOrders(kind, object, now, draft);
  GiveBack(kind, object, now, draft);
}

}  // namespace

Response AddTransaction(const Call& call) {
  const Kind& kind = call.OfKind();
  const Company& company = call.company.Data();
  Element object = Cleaned(call.element.children.front());
  if (auto status = Resolve(object, kind.fields, Use::kAdd, company, kind.name)) return {*status};
  Applications applications = ApplicationsOf(object);
  if (IsTrue(object.ChildText("IsAutoApply"))) {
    applications = AutomaticApplications(kind, object, company);
  }
  const std::vector<Credit> credits = CreditsOf(object);
  Draft draft(company);
  if (auto status = TakeIn(kind, object, call.now, draft)) return {*status};
  if (auto status = TakeOver(kind, object, call.now, draft)) return {*status};
  for (Element& child : object.children) KeepOverride(child);
  NameAsHeld(object, kind.fields, Use::kAdd);
  if (auto status = CompleteCustomFields(kind, object, company)) return {*status};
  ExpandGroups(kind, object, company);
  Complete(kind, object, company, call.company.NewNumbers(), call.now);
  if (auto status = Enter(call, draft, object, applications, credits)) return {*status};
  return Saved(call, draft.Take(), object);
}

Response ModifyTransaction(const Call& call) {
  const Kind& kind = call.OfKind();
  const Company& company = call.company.Data();
  Element given = call.element.children.front();
  const Element* before = nullptr;
  if (auto refusal = FindForChange(call, given, before)) return *std::move(refusal);
  if (auto status = Resolve(given, kind.fields, Use::kMod, company, kind.name)) return {*status};
  Applications applications = ApplicationsOf(given);
  if (applications.empty()) applications = ApplicationsOf(*before);
  const std::vector<Credit> credits = CreditsOf(given);
  given.Drop("AppliedToTxnMod");

  Element object = *before;
  ClearLines(object, given);
  if (auto status = ModifyLines(kind.fields, object, given, company)) return {*status};
  if (auto status = ModifyJournal(kind, object, given)) return {*status};
  for (Element& child : given.children) KeepOverride(child);
  NameAsHeld(given, kind.fields, Use::kMod);
  Merge(object, given, kind.fields);
  ExpandGroups(kind, object, company);
  FillIn(object, kind.fields, company);
  MakeAddressBlocks(kind, object);
  Touch(object, call.now);
  Draft draft(company);
  Leave(kind, *before, call.now, draft);
  DropOrderLinks(kind, object);
  if (auto status = Enter(call, draft, object, applications, credits)) return {*status};
  if (OpenAmountOf(kind, object) < Decimal()) {
    return {CannotModify(kind.name, "The amount is less than what has been paid.")};
  }
  return Saved(call, draft.Take(), object);
}

// A void is a modification to nothing, which also releases what was applied to the transaction.
Response VoidTransaction(const Call& call) {
  const std::string id(call.element.ChildText("TxnID"));
  const Target target =
      FindById(call.company.Data(), KindsNamed(call.element.ChildText("TxnVoidType")), id);
  if (!target) return {NotFound(id)};
  const Kind& kind = *target.kind;
  const Message asKind = {call.message.name, call.message.content, nullptr, {&kind}};
  const Call ofKind = {asKind,   call.element, call.company, call.session,
                       call.now, call.version, call.macros};
  Element object = *target.object;
  MakeVoid(kind, object);
  Draft draft(call.company.Data());
  Touch(object, call.now);
  Leave(kind, *target.object, call.now, draft);
  ReleasePayments(kind, *target.object, call.now, draft);
  ReleaseCredits(kind, *target.object, call.now, draft);
  DropLinksTo(*target.object, call.now, draft);
  if (auto status = Enter(ofKind, draft, object, {}, {})) return {*status};
  Status status = CommitFor(call, draft.Take(), kind.name);
  if (status.IsError()) return {std::move(status)};
  XmlWriter xml(XmlForm::kResponse);
  xml.Leaf("TxnVoidType", kind.name);
  for (const std::string_view field : {"TxnID", "TimeCreated", "TimeModified", "RefNumber"}) {
    if (object.Child(field)) xml.Leaf(field, object.ChildText(field));
  }
  return {.status = {}, .body = xml.Take()};
}

Response DeleteTransaction(const Call& call) {
  const Company& company = call.company.Data();
  const std::string id(call.element.ChildText("TxnID"));
  const Target target = FindById(company, KindsNamed(call.element.ChildText("TxnDelType")), id);
  if (!target) return {NotFound(id)};
  const Element* object = target.object;
  const Kind& kind = *target.kind;
  XmlWriter xml(XmlForm::kResponse);
  xml.Leaf("TxnDelType", kind.name);
  xml.Leaf("TxnID", id);
  xml.Leaf("TimeDeleted", call.now.text);
  if (object->Child("RefNumber")) xml.Leaf("RefNumber", object->ChildText("RefNumber"));
  Draft draft(company);
  Leave(kind, *object, call.now, draft);
  ReleasePayments(kind, *object, call.now, draft);
  ReleaseCredits(kind, *object, call.now, draft);
  DropLinksTo(*object, call.now, draft);
  Delete(kind, *object, call.now, draft);
  Status status = CommitFor(call, draft.Take(), kind.name);
  if (status.IsError()) return {std::move(status)};
  return {.status = {}, .body = xml.Take()};
}

}  // namespace ostrel::simulator
