// A transaction moves the balances of the objects that it names: Kind::postings lists for each kind
// which reference leads to an object, and what of the transaction moves it, in debit or in credit.
// Reversing a transaction posts the same amounts on the other side, so that a change is a reversal
// of the old transaction and a posting of the new one.
//
// Balances are stored as people expect to read them: a bank account in debits, a credit card in
// credits. The total of an object includes the balances of all objects below it, so every movement
// is carried up to the topmost parent.
//
// Attributes of lines keep what a posting depends on beside the line itself: "account", "cogs",
// "asset" the ListIDs of accounts, "cost" what the goods that leave the stock have cost. An item
// keeps the value of its stock ("value"), from which its average cost follows.
#include "simulator/company/Postings.h"

#include <algorithm>
#include <vector>

#include "simulator/company/Lines.h"
#include "simulator/company/NewAccounts.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Totals.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kCost = "cost";
constexpr std::string_view kValue = "value";
constexpr std::string_view kOpeningAccount = "openingAccount";
constexpr std::string_view kOpeningContra = "openingContra";

const Kind& Accounts() {
  static const Kind& kind = *FindKind("Account");
  return kind;
}

void Move(Element& object, std::string_view field, Decimal amount, int decimals) {
  object.Set(field, (Decimal::Of(object.ChildText(field)) + amount).ToString(decimals));
}

Decimal AttributeOf(const Element& element, std::string_view name) {
  const std::string* value = element.Find(name);
  return value ? Decimal::Of(*value) : Decimal();
}

// Moves the total of the object and of every object above it. The
// number of levels is bounded, so that parents in a circle cannot hold it up.
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

/// An object, as the draft has it.
struct Place {
  const Kind* kind = nullptr;
  std::string id = {};
  explicit operator bool() const { return kind != nullptr; }
};

// `amount` in debits.
void MoveBalance(const Place& place, Decimal amount, Draft& draft) {
  const Kind& kind = *place.kind;
  const Element* object = draft.Find(kind, place.id);
  if (!object || amount.IsZero() || !kind.Has("Balance")) return;
  const Decimal moved = BalanceSide(kind, *object) < 0 ? amount.Negated() : amount;
  Move(draft.Edit(kind, place.id), "Balance", moved, 2);
  if (kind.Has("TotalBalance")) MoveTotals(kind, place.id, moved, draft);
}

void MoveStock(const Place& place, Decimal quantity, Decimal value, Draft& draft) {
  const Kind& kind = *place.kind;
  if (!kind.Has("QuantityOnHand") || !draft.Find(kind, place.id)) return;
  Element& item = draft.Edit(kind, place.id);
  const Decimal worth = StockValueOf(item) + value;
  Move(item, "QuantityOnHand", quantity, 0);
  item.SetAttribute(kValue, worth.ToString(2));
  const Decimal count = Decimal::Of(item.ChildText("QuantityOnHand"));
  if (count > Decimal()) item.Set("AverageCost", (worth / count).ToString(2));
}

Decimal QuantityOf(const Element& transaction, const Element& line) {
  for (const std::string_view field : {"Quantity", "QuantityDifference"}) {
    if (const Element* quantity = line.Child(field)) return Decimal::Of(quantity->text);
  }
  if (&line == &transaction) return Decimal::Of(line.ChildText("QuantityToBuild"));
  const Element* needed = line.Child("QuantityNeeded");
  if (!needed) return {};
  return Decimal::Of(needed->text) * Decimal::Of(transaction.ChildText("QuantityToBuild"));
}

Decimal OpenQuantityOf(const Element& transaction, const Element& line) {
  if (IsTrue(transaction.ChildText("IsManuallyClosed")) ||
      IsTrue(line.ChildText("IsManuallyClosed"))) {
    return {};
  }
  const Decimal done =
      Decimal::Of(line.ChildText("Invoiced")) + Decimal::Of(line.ChildText("ReceivedQuantity"));
  return std::max(Decimal::Of(line.ChildText("Quantity")) - done, Decimal());
}

Decimal SumOf(const Element& transaction, std::string_view line, std::string_view field) {
  Decimal sum;
  for (const Element& child : transaction.children) {
    if (child.name == line) sum += Decimal::Of(child.ChildText(field));
  }
  return sum;
}

Decimal Measured(const Kind& kind, const Element& transaction, const Element& line,
                 Measure measure) {
  switch (measure) {
    case Measure::kTotal:
      return TotalOf(kind, transaction);
    case Measure::kTax:
      return Decimal::Of(transaction.ChildText(kind.sums.tax));
    case Measure::kDiscount:
      return SumOf(transaction, "AppliedToTxnRet", "DiscountAmount");
    case Measure::kAmount:
      return Decimal::Of(line.ChildText("Amount"));
    case Measure::kQuantity:
      return QuantityOf(transaction, line);
    case Measure::kOpenQuantity:
      return OpenQuantityOf(transaction, line);
    case Measure::kCost:
      return AttributeOf(line, kCost);
    case Measure::kLineDiscount:
      return Decimal::Of(line.ChildText("DiscountAmount"));
  }
  return {};
}

// Names stand for customers and vendors where their accounts are posted to by hand.
bool IsOfOpenAccount(const Element& line, const Target& entity, const Draft& draft) {
  const Element* reference = line.Child("AccountRef");
  const Element* account =
      reference ? draft.Find(Accounts(), reference->ChildText("ListID")) : nullptr;
  if (!account) return false;
  const std::string_view type = account->ChildText("AccountType");
  return (type == "AccountsReceivable" && entity.kind->name == "Customer") ||
         (type == "AccountsPayable" && entity.kind->name == "Vendor");
}

Place PlaceOf(const Element& element, const Posting& posting, const Draft& draft) {
  if (!posting.recorded.empty()) {
    if (const std::string* id = element.Find(posting.recorded)) return {&Accounts(), *id};
  }
  const auto find = [&](const Element* reference) {
    return reference ? FindReferred(draft.Before(), *reference) : Target();
  };
  Target target = find(element.Child(posting.reference));
  if (!target) return {};
  if (!posting.paths.empty()) target = find(Follow(*target.object, posting.paths));
  if (!target) return {};
  if (posting.reference == "EntityRef" && !IsOfOpenAccount(element, target, draft)) return {};
  return {target.kind, std::string(target.object->ChildText("ListID"))};
}

// Gives `visit` each posting with the element that it is of: a line, or the whole transaction.
template <class Transaction, class Visit>
void ForEachPosting(const Kind& kind, Transaction& transaction, Visit visit) {
  for (const Posting& posting : kind.postings) {
    if (posting.line.empty()) {
      visit(posting, transaction);
    } else {
      ForEachLine(transaction, posting.line, [&](auto& line) { visit(posting, line); });
    }
  }
}

bool IsPosted(const Element& transaction) { return !IsTrue(transaction.ChildText("IsPending")); }

void PostAll(const Kind& kind, const Element& transaction, int direction, Draft& draft) {
  if (!IsPosted(transaction)) return;
  ForEachPosting(kind, transaction, [&](const Posting& posting, const Element& element) {
    const Place place = PlaceOf(element, posting, draft);
    if (!place) return;
    const auto sided = [&](Decimal amount) {
      return posting.side * direction < 0 ? amount.Negated() : amount;
    };
    const Decimal amount = sided(Measured(kind, transaction, element, posting.measure));
    if (posting.measure == Measure::kQuantity) {
      const Decimal value = Measured(kind, transaction, element, posting.value);
      MoveStock(place, amount, sided(value), draft);
    } else if (!posting.field.empty()) {
      if (place.kind->Has(posting.field) && !amount.IsZero()) {
        Move(draft.Edit(*place.kind, place.id), posting.field, amount, 0);
      }
    } else {
      MoveBalance(place, amount, draft);
    }
  });
}

void FixCost(const Element& transaction, Element& line, Draft& draft) {
  const Target item = ItemOf(line, draft.Before());
  const Element* now = item ? draft.Find(*item.kind, item.object->ChildText("ListID")) : nullptr;
  if (!now || !item.kind->Has("QuantityOnHand")) return;
  line.SetAttribute(kCost,
                    (QuantityOf(transaction, line) * AverageCostOf(*now)).Cents().ToString(2));
}

// Posts what an object began with to the other accounts that it is noted for.
void PostOpeningElsewhere(const Kind& kind, const Element& object, int direction, Draft& draft) {
  ForEachOpeningEntry(kind, object, [&](const Entry& entry) {
    if (entry.account == object.ChildText("ListID")) return;
    MoveBalance({&Accounts(), entry.account}, direction < 0 ? entry.amount.Negated() : entry.amount,
                draft);
  });
}

}  // namespace

int BalanceSide(const Kind& kind, const Element& object) {
  if (kind.typeField.empty()) return kind.balanceSide;
  const std::string_view type = object.ChildText(kind.typeField);
  return std::ranges::find(kind.creditTypes, type) == kind.creditTypes.end() ? 1 : -1;
}

Decimal AverageCostOf(const Element& item) {
  const Decimal average = Decimal::Of(item.ChildText("AverageCost"));
  return average.IsZero() ? Decimal::Of(item.ChildText("PurchaseCost")) : average;
}

Decimal StockValueOf(const Element& item) {
  if (item.Find(kValue)) return AttributeOf(item, kValue);
  return (Decimal::Of(item.ChildText("QuantityOnHand")) * AverageCostOf(item)).Cents();
}

void ForEachEntry(const Kind& kind, const Element& transaction, const Company& company,
                  const std::function<void(const Entry&)>& visit) {
  if (!IsPosted(transaction)) return;
  const Draft draft(company);
  ForEachPosting(kind, transaction, [&](const Posting& posting, const Element& element) {
    if (posting.measure == Measure::kQuantity || !posting.field.empty()) return;
    const Place place = PlaceOf(element, posting, draft);
    if (!place || place.kind != &Accounts()) return;
    const Decimal amount = Measured(kind, transaction, element, posting.measure);
    if (amount.IsZero()) return;
    visit({place.id, posting.side < 0 ? amount.Negated() : amount,
           &element == &transaction ? nullptr : &element, posting.measure});
  });
}

void FixAccounts(const Kind& kind, Element& transaction, Numbers& numbers, const Stamp& now,
                 Draft& draft) {
  if (!kind.postings.empty()) transaction.SetAttribute(kFixed, "1");
  ForEachPosting(kind, transaction, [&](const Posting& posting, Element& element) {
    const bool isCost = posting.measure == Measure::kCost;
    if (isCost && !element.Find(kCost)) FixCost(transaction, element, draft);
    if (posting.recorded.empty() || element.Find(posting.recorded)) return;
    if (posting.special != SpecialAccount::kNone) {
      if (Measured(kind, transaction, element, posting.measure).IsZero()) return;
      element.SetAttribute(posting.recorded, NeedAccount(posting.special, numbers, now, draft));
    } else if (const Place place = PlaceOf(element, posting, draft)) {
      element.SetAttribute(posting.recorded, place.id);
    }
  });
}

void MoveParents(const Kind& kind, const Element& object, Decimal amount, Draft& draft) {
  const Element* parent = object.Child("ParentRef");
  if (parent && !amount.IsZero()) MoveTotals(kind, parent->ChildText("ListID"), amount, draft);
}

void FixOpening(const Kind& kind, Element& object, Numbers& numbers, const Stamp& now,
                Draft& draft) {
  const auto fix = [&](std::string_view name, SpecialAccount account) {
    object.SetAttribute(name, NeedAccount(account, numbers, now, draft));
  };
  const Decimal quantity = Decimal::Of(object.ChildText("QuantityOnHand"));
  if (kind.Has("QuantityOnHand")) object.SetAttribute(kOpeningQuantity, quantity.ToString(0));
  if (kind.Has("QuantityOnHand") && !quantity.IsZero()) {
    const Element* given = object.Child("TotalValue");
    const Decimal value =
        given ? Decimal::Of(given->text) : (quantity * AverageCostOf(object)).Cents();
    object.SetAttribute(kOpeningBalance, value.ToString(2));
    object.SetAttribute(kValue, value.ToString(2));
    object.Set("AverageCost", (value / quantity).ToString(2));
    if (const Element* asset = object.Child("AssetAccountRef")) {
      object.SetAttribute(kOpeningAccount, asset->ChildText("ListID"));
    }
    fix(kOpeningContra, SpecialAccount::kOpeningBalanceEquity);
    return;
  }
  if (AttributeOf(object, kOpeningBalance).IsZero()) return;
  if (kind.name == "Account") return fix(kOpeningContra, SpecialAccount::kOpeningBalanceEquity);
  const bool isCustomer = kind.name == "Customer";
  fix(kOpeningAccount, isCustomer ? SpecialAccount::kReceivable : SpecialAccount::kPayable);
  fix(kOpeningContra,
      isCustomer ? SpecialAccount::kUncategorizedIncome : SpecialAccount::kUncategorizedExpenses);
}

void PostOpening(const Kind& kind, const Element& object, bool own, Draft& draft) {
  const Decimal opening = AttributeOf(object, kOpeningBalance);
  if (opening.IsZero()) return;
  const std::string id(object.ChildText("ListID"));
  if (own && kind.Has("Balance")) {
    Move(draft.Edit(kind, id), "Balance", opening, 2);
    if (kind.Has("TotalBalance")) MoveTotals(kind, id, opening, draft);
  }
  PostOpeningElsewhere(kind, object, 1, draft);
}

void ReverseOpening(const Kind& kind, const Element& object, Draft& draft) {
  PostOpeningElsewhere(kind, object, -1, draft);
}

void ForEachOpeningEntry(const Kind& kind, const Element& object,
                         const std::function<void(const Entry&)>& visit) {
  const Decimal opening = AttributeOf(object, kOpeningBalance);
  if (opening.IsZero()) return;
  const bool isStock = kind.Has("QuantityOnHand");
  const Decimal debit = isStock || BalanceSide(kind, object) > 0 ? opening : opening.Negated();
  if (kind.name == "Account") visit({std::string(object.ChildText("ListID")), debit});
  if (const std::string* account = object.Find(kOpeningAccount)) visit({*account, debit});
  if (const std::string* contra = object.Find(kOpeningContra)) visit({*contra, debit.Negated()});
}

void Post(const Kind& kind, const Element& transaction, Draft& draft) {
  PostAll(kind, transaction, 1, draft);
}

void Reverse(const Kind& kind, const Element& transaction, Draft& draft) {
  PostAll(kind, transaction, -1, draft);
}

}  // namespace ostrel::simulator
