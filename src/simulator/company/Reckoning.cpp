#include "simulator/company/Reckoning.h"

#include <algorithm>

#include "simulator/company/Defaults.h"
#include "simulator/company/Objects.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kAmountName = "Amount";

const Field* FieldOfType(std::span<const Field> fields, FieldType type) {
  const auto found = std::ranges::find(fields, type, &Field::type);
  return found == fields.end() ? nullptr : &*found;
}

// Null without such a field, or without a value for it.
const Element* ValueOf(const Element& line, std::span<const Field> fields, FieldType type) {
  const Field* field = FieldOfType(fields, type);
  return field ? Follow(line, field->name) : nullptr;
}

// The price follows from an amount that was given.
void ReckonPrice(Element& line, std::span<const Field> fields) {
  const Element* quantity = ValueOf(line, fields, FieldType::kQuantity);
  const bool priced = ValueOf(line, fields, FieldType::kPrice) != nullptr ||
                      ValueOf(line, fields, FieldType::kPercent) != nullptr;
  const Field* price = FieldOfType(fields, FieldType::kPrice);
  if (!quantity || !price || priced || Decimal::Of(quantity->text).IsZero()) return;
  const Decimal rate = Decimal::Of(line.ChildText(kAmountName)) / Decimal::Of(quantity->text);
  if (rate.IsAmount()) line.Add(price->name, rate.ToString(2));
}

// A percentage is one of the line before.
std::optional<Decimal> ReckonedAmount(const Element& line, std::span<const Field> fields,
                                      Decimal before) {
  if (const Element* percent = ValueOf(line, fields, FieldType::kPercent)) {
    return (before * Decimal::Of(percent->text) / Decimal::Whole(100)).Cents();
  }
  const Element* price = ValueOf(line, fields, FieldType::kPrice);
  if (!price) return std::nullopt;
  const Element* quantity = ValueOf(line, fields, FieldType::kQuantity);
  const Decimal count = quantity ? Decimal::Of(quantity->text) : Decimal::Whole(1);
  return (count * Decimal::Of(price->text)).Cents();
}

Decimal ReckonLine(Element& line, std::span<const Field> fields, Decimal before) {
  if (line.Child(kAmountName)) {
    ReckonPrice(line, fields);
    return Decimal::Of(line.ChildText(kAmountName));
  }
  const auto amount = ReckonedAmount(line, fields, before);
  if (!amount) return {};
  line.Add(kAmountName, amount->ToString(2));
  return *amount;
}

bool IsTaxable(const Element& object, std::string_view reference, const Company& company) {
  const Element* code = object.Child(reference);
  if (!code) return false;
  const Target target = FindById(company, AllKinds(), code->ChildText("ListID"));
  return target && IsTrue(target.object->ChildText("IsTaxable"));
}

struct LineSums {
  Decimal all;
  Decimal taxable;
  Decimal credits;
  bool possible = true;
};

bool IsCredited(const Kind& kind, std::string_view line) {
  const auto posting = std::ranges::find(kind.postings, line, &Posting::line);
  return posting != kind.postings.end() && posting->side < 0;
}

LineSums ReckonLines(const Kind& kind, Element& transaction, const Company& company,
                     Numbers& numbers, const Stamp& now) {
  LineSums sums;
  Decimal amount;
  for (Element& line : transaction.children) {
    Breathe();
    const Field* field = FindField(kind.fields, line.name, kRet);
    if (!field || field->type != FieldType::kLine) continue;
    if (!line.Child("TxnLineID")) line.Add("TxnLineID", numbers.NewTxnId(now));
    amount = ReckonLine(line, field->children, amount);
    sums.all += amount;
    sums.possible = sums.possible && amount.IsAmount();
    if (IsCredited(kind, field->name)) sums.credits += amount;
    if (IsTaxable(line, "SalesTaxCodeRef", company)) sums.taxable += amount;
  }
  return sums;
}

// A customer's own code, if there is one, must be a taxable one too.
Decimal TaxOn(const Element& transaction, Decimal taxable, const Company& company) {
  constexpr std::string_view kCustomerCode = "CustomerSalesTaxCodeRef";
  if (transaction.Child(kCustomerCode) && !IsTaxable(transaction, kCustomerCode, company)) {
    return {};
  }
  const Decimal percent = Decimal::Of(transaction.ChildText("SalesTaxPercentage"));
  return (taxable * percent / Decimal::Whole(100)).Cents();
}

void SetAmount(Element& object, std::string_view name, Decimal amount) {
  if (!name.empty()) object.Set(name, amount.ToString(2));
}

Decimal AppliedBy(const Element& payment) {
  Decimal applied;
  for (const Element& child : payment.children) {
    if (child.name == "AppliedToTxnRet") applied += Decimal::Of(child.ChildText(kAmountName));
  }
  return applied;
}

void SetOpenAmount(const Kind& kind, Element& transaction) {
  if (kind.sums.open.empty()) return;
  const Decimal applied = Decimal::Of(transaction.ChildText(kind.sums.applied));
  const Decimal open = TotalOf(kind, transaction) + applied - AppliedBy(transaction);
  SetAmount(transaction, kind.sums.open, open);
  if (!kind.sums.paid.empty()) transaction.Set(kind.sums.paid, open.IsZero() ? "true" : "false");
}

// Balances are kept on the side on which they are usually found.
int BalanceSide(const Kind& kind, const Element& object) {
  if (kind.typeField.empty()) return kind.balanceSide;
  const std::string_view type = object.ChildText(kind.typeField);
  return std::ranges::find(kind.creditTypes, type) == kind.creditTypes.end() ? 1 : -1;
}

void Move(Element& object, std::string_view field, Decimal amount, int decimals) {
  object.Set(field, (Decimal::Of(object.ChildText(field)) + amount).ToString(decimals));
}

// The totals of all that the object lies below move with it.
void MoveTotals(const Kind& kind, std::string_view id, Decimal amount, Draft& draft) {
  constexpr int kMaxLevels = 10;
  std::string at(id);
  for (int level = 0; level < kMaxLevels && draft.Find(kind, at); ++level) {
    Element& object = draft.Edit(kind, at);
    Move(object, "TotalBalance", amount, 2);
    const Element* parent = object.Child("ParentRef");
    if (!parent) return;
    at = parent->ChildText("ListID");
  }
}

void MoveObject(const Target& target, const Posting& posting, Decimal amount, Draft& draft) {
  const Kind& kind = *target.kind;
  const std::string id(target.object->ChildText("ListID"));
  if (posting.measure == Measure::kQuantity) {
    if (kind.Has("QuantityOnHand")) Move(draft.Edit(kind, id), "QuantityOnHand", amount, 0);
    return;
  }
  if (!kind.Has("Balance")) return;
  const Decimal moved = BalanceSide(kind, *target.object) < 0 ? amount.Negated() : amount;
  Move(draft.Edit(kind, id), "Balance", moved, 2);
  if (kind.Has("TotalBalance")) MoveTotals(kind, id, moved, draft);
}

Target TargetOf(const Element& object, const Posting& posting, const Company& company) {
  const auto find = [&](const Element* reference) {
    return reference ? FindById(company, AllKinds(), reference->ChildText("ListID")) : Target();
  };
  const Target target = find(object.Child(posting.reference));
  if (!target || posting.paths.empty()) return target;
  return find(Follow(*target.object, posting.paths));
}

void PostOne(const Element& object, const Posting& posting, Decimal amount, int direction,
             Draft& draft) {
  const Target target = TargetOf(object, posting, draft.Before());
  if (!target || amount.IsZero()) return;
  const bool credit = posting.side * direction < 0;
  MoveObject(target, posting, credit ? amount.Negated() : amount, draft);
}

void PostLines(const Kind& kind, const Element& transaction, const Posting& posting, int direction,
               Draft& draft) {
  const bool amounts = posting.measure == Measure::kAmount;
  for (const Element& line : transaction.children) {
    const Field* field = FindField(kind.fields, line.name, kRet);
    Breathe();
    if (!field || field->name != posting.line) continue;
    const Decimal value = Decimal::Of(line.ChildText(amounts ? kAmountName : "Quantity"));
    PostOne(line, posting, value, direction, draft);
  }
}

void PostAll(const Kind& kind, const Element& transaction, int direction, Draft& draft) {
  for (const Posting& posting : kind.postings) {
    if (posting.measure == Measure::kTotal) {
      PostOne(transaction, posting, TotalOf(kind, transaction), direction, draft);
    } else {
      PostLines(kind, transaction, posting, direction, draft);
    }
  }
}

Decimal OpeningOf(const Element& object) {
  const std::string* opening = object.Find(kOpeningBalance);
  return opening ? Decimal::Of(*opening) : Decimal();
}

}  // namespace

std::optional<Status> Reckon(const Kind& kind, Element& transaction, const Company& company,
                             Numbers& numbers, const Stamp& now) {
  FillInDerived(transaction, kind.fields, company);
  const LineSums sums = ReckonLines(kind, transaction, company, numbers, now);
  if (kind.sums.balanced && sums.credits + sums.credits != sums.all) {
    return CannotSave(kind.name,
                      "The transaction is not in balance.  Make sure the total amount in the "
                      "debit column equals the total amount in the credit column.");
  }
  SetAmount(transaction, kind.sums.subtotal, sums.all);
  Decimal total = sums.all;
  if (!kind.sums.tax.empty()) {
    const Decimal tax = TaxOn(transaction, sums.taxable, company);
    SetAmount(transaction, kind.sums.tax, tax);
    total += tax;
  }
  if (!sums.possible || !total.IsAmount()) return BadAmount(total.ToString(2), kAmountName);
  if (!kind.sums.given) SetAmount(transaction, kind.sums.total, total);
  SetOpenAmount(kind, transaction);
  return std::nullopt;
}

Decimal TotalOf(const Kind& kind, const Element& transaction) {
  if (!kind.sums.total.empty()) return Decimal::Of(transaction.ChildText(kind.sums.total));
  return Decimal::Of(transaction.ChildText(kind.sums.subtotal)) +
         Decimal::Of(transaction.ChildText(kind.sums.tax));
}

Decimal OpenAmountOf(const Kind& kind, const Element& transaction) {
  return Decimal::Of(transaction.ChildText(kind.sums.open));
}

void ApplyAmount(const Kind& kind, Element& transaction, Decimal amount) {
  Move(transaction, kind.sums.applied, amount.Negated(), 2);
  SetOpenAmount(kind, transaction);
}

void MoveParents(const Kind& kind, const Element& object, Decimal amount, Draft& draft) {
  const Element* parent = object.Child("ParentRef");
  if (parent && !amount.IsZero()) MoveTotals(kind, parent->ChildText("ListID"), amount, draft);
}

void PostOpening(const Kind& kind, const Element& object, Draft& draft) {
  const Decimal opening = OpeningOf(object);
  if (opening.IsZero()) return;
  const std::string_view id = object.ChildText("ListID");
  Move(draft.Edit(kind, id), "Balance", opening, 2);
  if (kind.Has("TotalBalance")) MoveTotals(kind, id, opening, draft);
}

void Post(const Kind& kind, const Element& transaction, Draft& draft) {
  PostAll(kind, transaction, 1, draft);
}

void TakeBack(const Kind& kind, const Element& transaction, Draft& draft) {
  PostAll(kind, transaction, -1, draft);
}

}  // namespace ostrel::simulator
