// The totals of a transaction follow from its lines, in the order of the lines: a percentage (a
// discount or a surcharge) is one of the amount of the line above it. Every amount is rounded to
// cents as soon as it stands in a line, as QuickBooks does, so that the totals are exact sums of
// what the client sees. Kind::sums names the fields that a kind has; the totals of the others are
// computed in passing and stored nowhere.
#include "simulator/company/Totals.h"

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

// The value of the field of a type; null without such a field or without a value for it.
const Element* ValueOf(const Element& line, std::span<const Field> fields, FieldType type) {
  const Field* field = FieldOfType(fields, type);
  return field ? Follow(line, field->name) : nullptr;
}

// A line with an amount and a quantity gets the price that follows from them.
void DerivePrice(Element& line, std::span<const Field> fields) {
  const Element* quantity = ValueOf(line, fields, FieldType::kQuantity);
  const bool priced = ValueOf(line, fields, FieldType::kPrice) != nullptr ||
                      ValueOf(line, fields, FieldType::kPercent) != nullptr;
  const Field* price = FieldOfType(fields, FieldType::kPrice);
  if (!quantity || !price || priced || Decimal::Of(quantity->text).IsZero()) return;
  const Decimal rate = Decimal::Of(line.ChildText(kAmountName)) / Decimal::Of(quantity->text);
  if (rate.IsAmount()) line.Add(price->name, rate.ToString(2));
}

// The amount of a line that has none; `before` is the amount of the line above. Null when the line
// has neither price nor percentage.
std::optional<Decimal> AmountOf(const Element& line, std::span<const Field> fields,
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

Decimal ComputeLine(Element& line, std::span<const Field> fields, Decimal before) {
  if (line.Child(kAmountName)) {
    DerivePrice(line, fields);
    return Decimal::Of(line.ChildText(kAmountName));
  }
  const auto amount = AmountOf(line, fields, before);
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

struct LineTotals {
  Decimal all;
  Decimal taxable;
  Decimal credits;
  bool possible = true;
};

bool IsCredited(const Kind& kind, std::string_view line) {
  const auto posting = std::ranges::find(kind.postings, line, &Posting::line);
  return posting != kind.postings.end() && posting->side < 0;
}

LineTotals ComputeLines(const Kind& kind, Element& transaction, const Company& company,
                        Numbers& numbers, const Stamp& now) {
  LineTotals sums;
  Decimal amount;
  for (Element& line : transaction.children) {
    Breathe();
    const Field* field = FindField(kind.fields, line.name, Use::kRet);
    if (!field || field->type != FieldType::kLine) continue;
    if (!line.Child("TxnLineID")) line.Add("TxnLineID", numbers.NewTxnId(now));
    amount = ComputeLine(line, field->children, amount);
    sums.all += amount;
    sums.possible = sums.possible && amount.IsAmount();
    if (IsCredited(kind, field->name)) sums.credits += amount;
    if (IsTaxable(line, "SalesTaxCodeRef", company)) sums.taxable += amount;
  }
  return sums;
}

// The sales tax. A customer whose own tax code is not taxable pays none.
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

}  // namespace

std::optional<Status> ComputeTotals(const Kind& kind, Element& transaction, const Company& company,
                                    Numbers& numbers, const Stamp& now) {
  FillInDerived(transaction, kind.fields, company);
  const LineTotals sums = ComputeLines(kind, transaction, company, numbers, now);
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
  const Decimal applied = Decimal::Of(transaction.ChildText(kind.sums.applied));
  SetAmount(transaction, kind.sums.applied, applied - amount);
  SetOpenAmount(kind, transaction);
}

}  // namespace ostrel::simulator
