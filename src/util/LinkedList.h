// A doubly linked list of variant values whose nodes live in one growable array. The index that Add
// hands out names the same node until that node is removed, so callers keep indices as handles; 0
// names no node. The socket transport keeps its connections and its queue of requests in such
// lists.
#pragma once

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "util/Text.h"

namespace ostrel {

class LinkedList {
 public:
  /// Nothing, a number, a text, or an object (compared by identity only).
  using Value = std::variant<std::monostate, std::int32_t, double, Text, std::shared_ptr<void>>;

  /// The comparison that Find makes between the searched value and a node's item. Numbers sort
  /// before texts; nothing counts as 0 beside a number and as an empty text beside a text.
  enum Condition : std::int32_t {
    kEqual = 0,
    kNotEqual = 1,
    kLess = 2,
    kLessOrEqual = 3,
    kGreater = 4,
    kGreaterOrEqual = 5,
    kContained = 6,  // the searched text stands somewhere in the item's text
  };

  LinkedList();

  /// The current position; 0: none. Set without a check (Move checks).
  std::int32_t CurrIndex() const { return lCurrent; }
  void CurrIndex(std::int32_t index) { lCurrent = index; }
  void MoveFirst() { lCurrent = lFirst; }
  void MoveLast() { lCurrent = lLast; }
  void MovePrevious();
  void MoveNext();
  void Move(std::int32_t index);
  /// Before the beginning: the list is empty, or a step back has left it.
  bool BOL() const { return IsEmpty() || (lCurrent == 0 && !bForward); }
  /// Past the end: the list is empty, or a step forward has left it.
  bool EOL() const { return IsEmpty() || (lCurrent == 0 && bForward); }

  /// Index 0 names the current node. Raise error 5 when there is no such node.
  const Value& Item(std::int32_t index = 0) const;
  void Item(std::int32_t index, Value value);
  const Value& ExtraData(std::int32_t index = 0) const;
  void ExtraData(std::int32_t index, Value value);

  bool IsEmpty() const { return lCount == 0; }
  std::int32_t Count() const { return lCount; }

  /// Inserts in front of `before` (negative: the first node), else behind `after`, else at the end.
  /// Returns the new node's index. Raises error 5 when the node named is none, the list unchanged.
  std::int32_t Add(Value value, std::int32_t before = 0, std::int32_t after = 0);
  /// Index 0 names the current node. A removed current node passes that on to its next.
  void Remove(std::int32_t index = 0);
  void RemoveByKey(const Value& value, std::int32_t condition = kEqual,
                   std::int32_t startIndex = -1, bool descending = false);
  /// Drops every value. Kept: count, ends and current position stay as they were, as they always
  /// did. A list is emptied for further use by assigning a new one.
  void RemoveAll();

  /// Searches from the node behind startIndex (before it when descending), from the current node on
  /// for 0, from the end of the list for a negative one. The result, 0 when nothing matched, also
  /// becomes the current position.
  std::int32_t Find(const Value& value, std::int32_t condition = kEqual,
                    std::int32_t startIndex = -1, bool descending = false);

  /// Makes room for numEls nodes (never less than there is) and sets how many the array grows by.
  void SetSize(std::int32_t numEls, std::int32_t chunkSize);
  /// Raises error 5 unless the index names a node in use.
  void CheckIndex(std::int32_t index) const;

 private:
  struct Node {
    Value item;
    Value extra;
    std::int32_t lPrevious = 0;  // kFree while the slot is free
    std::int32_t lNext = 0;      // for a free slot: the next free slot
  };

  // Links may point outside the array after RemoveAll: raises error 9 then.
  Node& At(std::int32_t index);
  const Node& At(std::int32_t index) const;
  std::int32_t UpperBound() const { return static_cast<std::int32_t>(oNodes.size()) - 1; }
  std::int32_t Named(std::int32_t index) const;
  std::int32_t FindStart(std::int32_t startIndex, bool descending) const;
  void Grow(std::int32_t slots);
  void LinkBetween(std::int32_t index, std::int32_t previous, std::int32_t next);

  std::vector<Node> oNodes;
  std::int32_t lCount = 0;
  std::int32_t lFirst = 0;
  std::int32_t lLast = 0;
  std::int32_t lFree = 0;
  std::int32_t lGrowth = 0;
  std::int32_t lCurrent = 0;
  bool bForward = false;
};

}  // namespace ostrel
