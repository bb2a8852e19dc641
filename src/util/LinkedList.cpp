// The nodes live in one array and name each other by index; index 0 is no node. Removed nodes form
// a chain of their own and are used again before the array grows. A node in that chain has kFree as
// its previous node: this is how an index that is no longer in use is told.
#include "util/LinkedList.h"

#include <algorithm>
#include <charconv>
#include <compare>
#include <utility>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

constexpr std::int32_t kFree = -1;
constexpr std::int32_t kUsualGrowth = 100;

using Value = LinkedList::Value;
using Object = std::shared_ptr<void>;

bool IsText(const Value& value) { return std::holds_alternative<Text>(value); }
bool IsObject(const Value& value) { return std::holds_alternative<Object>(value); }

double NumberOf(const Value& value) {
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
  if (const auto* real = std::get_if<double>(&value)) return *real;
  return 0;
}

Text Digits(double number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number);
  return FromAscii({digits, static_cast<std::size_t>(end.ptr - digits)});
}

Text TextOf(const Value& value) {
  if (const auto* text = std::get_if<Text>(&value)) return *text;
  if (const auto* whole = std::get_if<std::int32_t>(&value)) return ToText(std::int64_t{*whole});
  if (const auto* real = std::get_if<double>(&value)) return Digits(*real);
  return {};
}

TextView TextViewOf(const Value& value) {
  const auto* text = std::get_if<Text>(&value);
  return text == nullptr ? TextView() : TextView(*text);
}

bool IsNothing(const Value& value) { return std::holds_alternative<std::monostate>(value); }

std::partial_ordering Compare(const Value& a, const Value& b) {
  const bool asTexts = (IsText(a) || IsNothing(a)) && (IsText(b) || IsNothing(b));
  if (asTexts) return TextViewOf(a) <=> TextViewOf(b);
  if (IsText(a)) return std::partial_ordering::greater;
  if (IsText(b)) return std::partial_ordering::less;
  return NumberOf(a) <=> NumberOf(b);
}

bool MatchesObject(const Value& value, const Value& item, std::int32_t condition) {
  if (!IsObject(value)) return false;
  const bool same = IsObject(item) && std::get<Object>(value) == std::get<Object>(item);
  return (condition == LinkedList::kEqual && same) || (condition == LinkedList::kNotEqual && !same);
}

// In the order of LinkedList::Condition.
constexpr bool (*kOrderTests[])(std::partial_ordering) = {std::is_eq,   std::is_neq, std::is_lt,
                                                          std::is_lteq, std::is_gt,  std::is_gteq};

bool Matches(const Value& value, const Value& item, std::int32_t condition) {
  if (IsObject(value) || IsObject(item)) return MatchesObject(value, item, condition);
  if (condition == LinkedList::kContained) return Contains(TextOf(item), TextOf(value));
  const bool ordered = condition >= LinkedList::kEqual && condition <= LinkedList::kGreaterOrEqual;
  return ordered && kOrderTests[condition](Compare(value, item));
}

}  // namespace

LinkedList::LinkedList() { RemoveAll(); }

void LinkedList::MovePrevious() {
  lCurrent = At(lCurrent).lPrevious;
  bForward = false;
}

void LinkedList::MoveNext() {
  lCurrent = At(lCurrent).lNext;
  bForward = true;
}

void LinkedList::Move(std::int32_t index) {
  CheckIndex(index);
  lCurrent = index;
}

const Value& LinkedList::Item(std::int32_t index) const { return At(Named(index)).item; }

void LinkedList::Item(std::int32_t index, Value value) { At(Named(index)).item = std::move(value); }

const Value& LinkedList::ExtraData(std::int32_t index) const { return At(Named(index)).extra; }

void LinkedList::ExtraData(std::int32_t index, Value value) {
  At(Named(index)).extra = std::move(value);
}

std::int32_t LinkedList::Add(Value value, std::int32_t before, std::int32_t after) {
  if (before < 0) before = lFirst;
  if (before > 0) {
    CheckIndex(before);
  } else if (after > 0) {
    CheckIndex(after);
  }
  if (lFree == 0) Grow(lGrowth);

  const std::int32_t index = lFree;
  lFree = At(index).lNext;
  if (before > 0) {
    LinkBetween(index, At(before).lPrevious, before);
  } else if (after > 0) {
    LinkBetween(index, after, At(after).lNext);
  } else {
    LinkBetween(index, lLast, 0);
  }
  At(index).item = std::move(value);
  ++lCount;
  return index;
}

void LinkedList::Remove(std::int32_t index) {
  index = Named(index);
  Node& node = At(index);
  const std::int32_t previous = node.lPrevious;
  const std::int32_t next = node.lNext;
  if (previous != 0) {
    At(previous).lNext = next;
  } else {
    lFirst = next;
  }
  if (next != 0) {
    At(next).lPrevious = previous;
  } else {
    lLast = previous;
  }
  --lCount;
  if (index == lCurrent) lCurrent = next;
  node = Node{{}, {}, kFree, lFree};
  lFree = index;
}

void LinkedList::RemoveByKey(const Value& value, std::int32_t condition, std::int32_t startIndex,
                             bool descending) {
  const std::int32_t found = Find(value, condition, startIndex, descending);
  if (found > 0) Remove(found);
}

void LinkedList::RemoveAll() {
  oNodes.clear();
  oNodes.resize(1);
  Grow(kUsualGrowth);
  lGrowth = kUsualGrowth;
}

std::int32_t LinkedList::Find(const Value& value, std::int32_t condition, std::int32_t startIndex,
                              bool descending) {
  std::int32_t index = FindStart(startIndex, descending);
  // After RemoveAll the links can run in a circle: no walk is longer than the array.
  std::size_t nodesLeft = oNodes.size();
  while (index != 0 && !Matches(value, At(index).item, condition)) {
    const Node& node = At(index);
    const std::int32_t next = descending ? node.lPrevious : node.lNext;
    index = --nodesLeft > 0 ? next : 0;
  }
  lCurrent = index;
  return index;
}

std::int32_t LinkedList::FindStart(std::int32_t startIndex, bool descending) const {
  if (startIndex == 0) return lCurrent;
  if (startIndex < 0) return descending ? lLast : lFirst;
  CheckIndex(startIndex);
  return descending ? At(startIndex).lPrevious : At(startIndex).lNext;
}

void LinkedList::SetSize(std::int32_t numEls, std::int32_t chunkSize) {
  if (numEls > UpperBound()) Grow(numEls - UpperBound());
  lGrowth = std::max(chunkSize, 1);
}

void LinkedList::CheckIndex(std::int32_t index) const {
  const bool names = index >= 1 && index <= UpperBound();
  if (!names || At(index).lPrevious == kFree) {
    throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
  }
}

LinkedList::Node& LinkedList::At(std::int32_t index) {
  return const_cast<Node&>(std::as_const(*this).At(index));
}

const LinkedList::Node& LinkedList::At(std::int32_t index) const {
  if (index < 0 || index > UpperBound()) throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
  return oNodes[static_cast<std::size_t>(index)];
}

std::int32_t LinkedList::Named(std::int32_t index) const {
  if (index == 0) index = lCurrent;
  CheckIndex(index);
  return index;
}

void LinkedList::Grow(std::int32_t slots) {
  const std::int32_t firstNew = UpperBound() + 1;
  oNodes.resize(oNodes.size() + static_cast<std::size_t>(slots));
  for (std::int32_t index = firstNew; index <= UpperBound(); ++index) {
    At(index).lPrevious = kFree;
    At(index).lNext = index + 1;
  }
  At(UpperBound()).lNext = lFree;
  lFree = firstNew;
}

void LinkedList::LinkBetween(std::int32_t index, std::int32_t previous, std::int32_t next) {
  Node& node = At(index);
  node.lPrevious = previous;
  node.lNext = next;
  if (previous != 0) {
    At(previous).lNext = index;
  } else {
    lFirst = index;
  }
  if (next != 0) {
    At(next).lPrevious = index;
  } else {
    lLast = index;
  }
}

}  // namespace ostrel
