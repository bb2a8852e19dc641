// A client gives only some of an object's fields. The others come, in this order, from the object
// that a reference names (an invoice takes its terms from the customer, a line its price from the
// item), from the constant that the table of fields has for them, and from the clock and the
// company's numbers. Values that a client could have given are filled in once; derived ones, which
// no client may give, are filled in anew whenever the object changes.
#include "simulator/company/Defaults.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <string>
#include <vector>

#include "simulator/company/Accounts.h"
#include "simulator/company/Objects.h"
#include "simulator/values/Dates.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

void AddIfMissing(Element& object, std::string_view name, std::string_view value) {
  if (!object.Child(name)) object.Add(name, value);
}

bool IsPriced(const Field& field) {
  return field.type == FieldType::kPrice || field.type == FieldType::kPercent;
}

// A line whose amount is given needs no price, and one of two fields that exclude each other is
// enough.
bool IsWanted(const Element& object, const Field& field, std::span<const Field> fields) {
  if (object.Child(field.name)) return false;
  if (IsPriced(field) && object.Child("Amount")) return false;
  return field.either == 0 || std::ranges::none_of(fields, [&](const Field& other) {
           return other.either == field.either && object.Child(other.name);
         });
}

Target SourceOf(const Element& object, const Field& field, const Company& company) {
  const Element* reference = object.Child(field.source.reference);
  return reference ? FindReferred(company, *reference) : Target();
}

void FillFromSource(Element& object, const Field& field, const Company& company) {
  const Target target = SourceOf(object, field, company);
  const Element* found = target ? Follow(*target.object, field.source.paths) : nullptr;
  if (!found) return;
  Element& copy = object.children.emplace_back(*found);
  copy.name = field.name;
  if (IsPriced(field) && target.kind->priceSign < 0) {
    copy.text = Decimal::Of(copy.text).Negated().ToString(2);
  }
}

// The company's first code that is (or is not) taxable.
void FillInTaxCode(Element& object, const Field& field, const Company& company) {
  const Kind& kind = *FindKind(field.refers);
  const bool wanted = field.otherwise == "taxable";
  for (const auto& [key, code] : company.List(kind).InOrder()) {
    if (IsTrue(code.ChildText("IsTaxable")) != wanted) continue;
    object.children.push_back(ReferenceTo(field.name, {&kind, &code}));
    return;
  }
}

void FillOtherwise(Element& object, const Field& field, const Company& company) {
  if (field.type != FieldType::kReference) {
    object.Add(field.name, field.otherwise);
    return;
  }
  if (field.refers == "SalesTaxCode") return FillInTaxCode(object, field, company);
  if (field.name == "DepositToAccountRef") {
    if (const Element* funds = FindAccount(company, SpecialAccount::kUndepositedFunds)) {
      object.children.push_back(ReferenceTo(field.name, {FindKind("Account"), funds}));
      return;
    }
  }
  const Kind& kind = *FindKind(field.refers);
  for (const auto& [key, target] : company.List(kind).InOrder()) {
    if (target.ChildText(kind.typeField) != field.otherwise) continue;
    object.children.push_back(ReferenceTo(field.name, {&kind, &target}));
    return;
  }
}

void FillOne(Element& object, const Field& field, std::span<const Field> fields,
             const Company& company) {
  if (field.name.empty()) return;
  if (!field.source.reference.empty() && IsWanted(object, field, fields)) {
    FillFromSource(object, field, company);
  }
  if (!field.otherwise.empty() && !object.Child(field.name)) FillOtherwise(object, field, company);
}

void CompleteTransaction(const Kind& kind, Element& object, const Company& company,
                         Numbers& numbers, const Stamp& now) {
  if (kind.Has(kind.dateField)) AddIfMissing(object, kind.dateField, DateText(DayOf(now)));
  const bool isCounted = kind.Has("TxnNumber") && !object.Child("TxnNumber");
  if (isCounted) object.Add("TxnNumber", std::to_string(numbers.NewTxnNumber()));
  if (kind.numbered && !object.Child("RefNumber")) {
    object.Add("RefNumber", std::to_string(company.List(kind).HighestRefNumber() + 1));
  }
}

// The due date follows from the date and the terms; without terms it is the date itself.
void FillInDueDate(const Kind& kind, Element& object, const Company& company) {
  constexpr int kMostDays = 3650;
  if (!kind.Has("DueDate") || object.Child("DueDate")) return;
  const Element* reference = object.Child("TermsRef");
  const Target terms = reference ? FindReferred(company, *reference) : Target();
  const auto date = ParseDate(object.ChildText("TxnDate"));
  if (!date) return;
  int days = 0;
  const std::string_view text = terms ? terms.object->ChildText("StdDueDays") : "";
  std::from_chars(text.data(), text.data() + text.size(), days);
  object.Add("DueDate", DateText(*date + std::chrono::days(std::clamp(days, 0, kMostDays))));
}

// The opening balance of a new object is no transaction here; an attribute of the object keeps it.
void TakeOpenBalance(Element& object) {
  const Element* opening = object.Child("OpenBalance");
  if (!opening) return;
  const std::string balance = opening->text;
  object.Drop("OpenBalance");
  object.Drop("OpenBalanceDate");
  object.Set("Balance", balance);
  object.attributes.push_back({std::string(kOpeningBalance), balance});
}

std::string JoinedParts(const Kind& kind, const Element& object) {
  std::string name;
  for (const std::string_view part : kind.nameParts) {
    const std::string_view text = object.ChildText(part);
    if (!name.empty() && !text.empty()) name += ' ';
    name += text;
  }
  return name;
}

void CompleteListObject(const Kind& kind, Element& object) {
  TakeOpenBalance(object);
  if (kind.Has("TotalBalance")) {
    const std::string balance(object.ChildText("Balance"));
    AddIfMissing(object, "TotalBalance", balance.empty() ? "0.00" : balance);
  }
  const Element* parent = object.Child("ParentRef");
  const bool named = object.Child(kind.Has("FullName") ? "FullName" : kind.nameField);
  if (!named) MakeNames(kind, object, parent ? parent->ChildText("FullName") : "");
  if (kind.Has("Sublevel") && !object.Child("Sublevel")) {
    object.Add("Sublevel", std::to_string(std::ranges::count(object.ChildText("FullName"), ':')));
  }
}

// "Napa, CA 94559"
std::string TownLine(const Element& address) {
  std::string line(address.ChildText("City"));
  const std::string_view state = address.ChildText("State");
  const std::string_view code = address.ChildText("PostalCode");
  if (!line.empty() && !state.empty()) line += ", ";
  line += state;
  if (!line.empty() && !code.empty()) line += ' ';
  return line.append(code);
}

// An address as it is printed, in at most five lines.
Element BlockOf(std::string_view name, const Element& address) {
  constexpr std::size_t kMostLines = 5;
  std::vector<std::string> lines;
  for (const Element& child : address.children) {
    if (child.name.starts_with("Addr") && !child.text.empty()) lines.push_back(child.text);
  }
  lines.push_back(TownLine(address));
  lines.emplace_back(address.ChildText("Country"));
  std::erase(lines, "");
  Element block{.name = std::string(name)};
  for (std::size_t i = 0; i < std::min(lines.size(), kMostLines); ++i) {
    block.Add("Addr" + std::to_string(i + 1), lines[i]);
  }
  return block;
}

// A group of sales taxes comes to the sum of its taxes.
std::string TaxRateOf(const Target& tax, const Company& company) {
  Decimal rate = Decimal::Of(tax.object->ChildText("TaxRate"));
  for (const Element& member : tax.object->children) {
    if (member.name != "ItemSalesTaxRef") continue;
    const Target item = FindById(company, KindsNamed("ItemSalesTax"), member.ChildText("ListID"));
    if (item) rate += Decimal::Of(item.object->ChildText("TaxRate"));
  }
  return rate.ToString(2);
}

}  // namespace

void Complete(const Kind& kind, Element& object, const Company& company, Numbers& numbers,
              const Stamp& now) {
  const bool isList = kind.category == Category::kList;
  object.name = kind.name;
  if (!object.Child(kind.IdField())) {
    object.Add(kind.IdField(), isList ? numbers.NewListId(now) : numbers.NewTxnId(now));
  }
  AddIfMissing(object, "TimeCreated", now.text);
  AddIfMissing(object, "TimeModified", now.text);
  AddIfMissing(object, "EditSequence", std::to_string(now.seconds));
  if (isList) {
    CompleteListObject(kind, object);
  } else {
    CompleteTransaction(kind, object, company, numbers, now);
  }
  FillIn(object, kind.fields, company);
  FillInDueDate(kind, object, company);
  if (kind.Has("ShipDate")) AddIfMissing(object, "ShipDate", object.ChildText("TxnDate"));
  MakeAddressBlocks(kind, object);
}

void FillIn(Element& object, std::span<const Field> fields, const Company& company) {
  for (const Field& field : fields) FillOne(object, field, fields, company);
  FieldFinder finder(fields, Use::kRet);
  for (Element& child : object.children) {
    const Field* field = child.children.empty() ? nullptr : finder.Find(child.name);
    BreatheLightly();
    if (field && field->type == FieldType::kLine) FillIn(child, field->children, company);
  }
}

void FillInDerived(Element& object, std::span<const Field> fields, const Company& company) {
  for (const Field& field : fields) {
    const bool isGiven = !field.inAdd.empty() || !field.inMod.empty();
    if (isGiven || field.source.reference.empty()) continue;
    object.Drop(field.name);
    const Target tax =
        field.name == "SalesTaxPercentage" ? SourceOf(object, field, company) : Target();
    if (tax) {
      object.Add(field.name, TaxRateOf(tax, company));
    } else {
      FillOne(object, field, fields, company);
    }
  }
}

void MakeAddressBlocks(const Kind& kind, Element& object) {
  constexpr std::string_view kBlock = "Block";
  for (const Field& field : kind.fields) {
    if (!field.name.ends_with("AddressBlock")) continue;
    object.Drop(field.name);
    const Element* address = object.Child(field.name.substr(0, field.name.size() - kBlock.size()));
    if (!address) continue;
    Element block = BlockOf(field.name, *address);
    if (!block.children.empty()) object.children.push_back(std::move(block));
  }
}

const Field* FindMissing(const Element& object, std::span<const Field> fields) {
  for (const Field& field : fields) {
    if (field.isNeeded && !Follow(object, field.name)) return &field;
  }
  FieldFinder finder(fields, Use::kRet);
  for (const Element& child : object.children) {
    const Field* field = child.children.empty() ? nullptr : finder.Find(child.name);
    if (!field) continue;
    if (const Field* missing = FindMissing(child, field->children)) return missing;
  }
  return nullptr;
}

void MakeNames(const Kind& kind, Element& object, std::string_view parentFullName) {
  if (!kind.nameParts.empty()) object.Set(kind.nameField, JoinedParts(kind, object));
  if (!kind.Has("FullName")) return;
  const std::string fullName = JoinedName(parentFullName, object.ChildText(kind.nameField));
  object.Set("FullName", fullName);
  if (kind.Has("Sublevel")) {
    object.Set("Sublevel", std::to_string(std::ranges::count(fullName, ':')));
  }
}

}  // namespace ostrel::simulator
