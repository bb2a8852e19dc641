// The totals of a transaction follow from its lines, in the order of the lines: a percentage (a
// discount or a surcharge) is one of the amount of the line above it. Every amount is rounded to
// cents as soon as it stands in a line, as QuickBooks does, so that the totals are exact sums of
// what the client sees. Kind::sums names the fields that a kind has; the totals of the others are
// computed in passing and stored nowhere.
#include "simulator/company/Totals.h"

#include <algorithm>
#include <utility>

#include "simulator/company/Defaults.h"
#include "simulator/company/Lines.h"
#include "simulator/company/Objects.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kAmountName = "Amount";
constexpr std::string_view kPaid = "paid";  // where no field says what is

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
  const Target target = FindReferred(company, *code);
  return target && IsTrue(target.object->ChildText("IsTaxable"));
}

struct LineTotals {
  Decimal all;
  Decimal taxable;
  Decimal credits;
  bool possible = true;
  Decimal before;         // the amount of the line above
  Decimal sinceSubtotal;  // of the lines behind the last subtotal
};

bool IsCredited(const Kind& kind, std::string_view line) {
  const auto posting = std::ranges::find(kind.postings, line, &Posting::line);
  return posting != kind.postings.end() && posting->side < 0;
}

class LineReckoner {
 public:
  LineReckoner(const Kind& kind, const Company& company, Numbers& numbers, const Stamp& now)
      : oKind(kind), oCompany(company), oNumbers(numbers), oNow(now) {}

  LineTotals Reckon(Element& transaction) {
    for (Element& child : transaction.children) {
      Breathe();
      const Field* field = FindField(oKind.fields, child.name, Use::kRet);
      if (!field) continue;
      if (IsGroup(child.name)) {
        ReckonGroup(child, *field);
      } else if (field->type == FieldType::kLine) {
        Add(child, *field);
      } else if (child.name == "CashBackInfoRet") {
        GiveId(child);
        oTotals.all += Decimal::Of(child.ChildText(kAmountName)).Negated();
      }
    }
    return oTotals;
  }

 private:
  void GiveId(Element& line) {
    if (!line.Child("TxnLineID")) line.Add("TxnLineID", oNumbers.NewTxnId(oNow));
  }

  void ReckonGroup(Element& group, const Field& field) {
    const Decimal before = oTotals.all;
    GiveId(group);
    FieldFinder finder(field.children, Use::kRet);
    for (Element& line : group.children) {
      const Field* inner = finder.Find(line.name);
      if (inner && inner->type == FieldType::kLine) Add(line, *inner);
    }
    group.Set("TotalAmount", (oTotals.all - before).ToString(2));
  }

  bool IsSubtotal(const Element& line) const {
    const Target item = ItemOf(line, oCompany);
    return item && item.kind->name == "ItemSubtotal";
  }

  void Add(Element& line, const Field& field) {
    GiveId(line);
    if (IsSubtotal(line)) {
      line.Set(kAmountName, oTotals.sinceSubtotal.ToString(2));
      oTotals.before = std::exchange(oTotals.sinceSubtotal, Decimal());
      return;
    }
    const Decimal amount = ComputeLine(line, field.children, oTotals.before);
    oTotals.before = amount;
    oTotals.all += amount;
    oTotals.sinceSubtotal += amount;
    oTotals.possible = oTotals.possible && amount.IsAmount();
    if (IsCredited(oKind, field.name)) oTotals.credits += amount;
    if (IsTaxable(line, "SalesTaxCodeRef", oCompany)) oTotals.taxable += amount;
  }

  const Kind& oKind;
  const Company& oCompany;
  Numbers& oNumbers;
  const Stamp& oNow;
  LineTotals oTotals;
};

// What has been paid of a transaction, or used of a credit.
Decimal PaidOf(const Kind& kind, const Element& transaction) {
  if (!kind.sums.applied.empty()) {
    return Decimal::Of(transaction.ChildText(kind.sums.applied)).Negated();
  }
  const std::string* paid = transaction.Find(kPaid);
  return paid ? Decimal::Of(*paid) : Decimal();
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

// A payment keeps in its applications what it has paid.
Decimal AppliedBy(const Element& payment) {
  Decimal applied;
  for (const Element& child : payment.children) {
    if (child.name == "AppliedToTxnRet") applied += Decimal::Of(child.ChildText(kAmountName));
  }
  return applied;
}

void SetOpenAmount(const Kind& kind, Element& transaction) {
  if (kind.sums.open.empty()) return;
  const Decimal applied = kind.pays.empty() ? Decimal() : AppliedBy(transaction);
  const Decimal open = TotalOf(kind, transaction) - PaidOf(kind, transaction) - applied;
  SetAmount(transaction, kind.sums.open, open);
  if (!kind.sums.paid.empty()) transaction.Set(kind.sums.paid, open.IsZero() ? "true" : "false");
}

}  // namespace

std::optional<Status> ComputeTotals(const Kind& kind, Element& transaction, const Company& company,
                                    Numbers& numbers, const Stamp& now) {
  FillInDerived(transaction, kind.fields, company);
  const LineTotals sums = LineReckoner(kind, company, numbers, now).Reckon(transaction);
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
  const bool isByItem = kind.sums.given && !transaction.Child(kind.sums.total);
  if (isByItem) ComputeLine(transaction, kind.fields, {});
  if (!kind.sums.given && kind.pays.empty()) SetAmount(transaction, kind.sums.total, total);
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
  const Decimal paid = PaidOf(kind, transaction) + amount;
  if (kind.sums.applied.empty()) {
    transaction.SetAttribute(kPaid, paid.ToString(2));
  } else {
    SetAmount(transaction, kind.sums.applied, paid.Negated());
  }
  SetOpenAmount(kind, transaction);
}

}  // namespace ostrel::simulator
