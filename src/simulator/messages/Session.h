// The memory of a session from one request to the next: the iterators of its queries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {

/// The objects that a query has yet to return, and the query's name.
struct Iterator {
  std::string id;
  std::string query;
  std::vector<std::pair<const Kind*, std::uint64_t>> objects;  // with their serials
  std::size_t next = 0;

  std::size_t Remaining() const { return objects.size() - next; }
};

class Session {
 public:
  /// `ticket` as in "{3F2504E0-4F89-41D3-9A0C-0305E82C3301}"; its iterators' IDs follow from it.
  explicit Session(std::string ticket = "{00000000-0000-0000-0000-000000000000}")
      : sTicket(std::move(ticket)) {}

  /// Keeps the iterator and gives it an ID. Beyond a hundred of them the oldest is forgotten.
  Iterator& Keep(Iterator iterator);
  /// Null for an ID that was not given out, or that has ended, or for another query.
  Iterator* Find(std::string_view id, std::string_view query);
  void End(const Iterator& iterator);

 private:
  std::string sTicket;
  std::deque<Iterator> oIterators;
  unsigned lCount = 0;
};

}  // namespace ostrel::simulator
