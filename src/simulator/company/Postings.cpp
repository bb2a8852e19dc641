// A transaction moves the balances of the objects that it names: Kind::postings lists for each kind
// which reference leads to an object, and whether the total, each line's amount or each line's
// quantity moves it, in debit or in credit. Reversing a transaction posts the same amounts on the
// other side, so that a change is a reversal of the old transaction and a posting of the new one.
//
// Balances are stored as people expect to read them: a bank account in debits, a credit card in
// credits. The total of an object includes the balances of all objects below it, so every movement
// is carried up to the topmost parent.
#include "simulator/company/Postings.h"

#include <algorithm>

#include "simulator/company/Objects.h"
#include "simulator/company/Totals.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

// 1 when the balance of the object is stored in debits, -1 when it is stored in credits.
int BalanceSide(const Kind& kind, const Element& object) {
  if (kind.typeField.empty()) return kind.balanceSide;
  const std::string_view type = object.ChildText(kind.typeField);
  return std::ranges::find(kind.creditTypes, type) == kind.creditTypes.end() ? 1 : -1;
}

void Move(Element& object, std::string_view field, Decimal amount, int decimals) {
  object.Set(field, (Decimal::Of(object.ChildText(field)) + amount).ToString(decimals));
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
    const Field* field = FindField(kind.fields, line.name, Use::kRet);
    Breathe();
    if (!field || field->name != posting.line) continue;
    const Decimal value = Decimal::Of(line.ChildText(amounts ? "Amount" : "Quantity"));
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

void Reverse(const Kind& kind, const Element& transaction, Draft& draft) {
  PostAll(kind, transaction, -1, draft);
}

}  // namespace ostrel::simulator
