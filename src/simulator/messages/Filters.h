// The filters of queries, of lists and of transactions.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "simulator/messages/Message.h"
#include "simulator/messages/RetWriter.h"

namespace ostrel::simulator {

struct Candidate {
  const Kind& kind;
  const Text& key;  // in its ObjectList
  const ObjectList::Entry& object;
};

using Filter = std::function<bool(const Candidate&)>;

/// The filters of a query, all of which an object must pass.
struct Filters {
  std::vector<Filter> all = {};
  std::optional<Status> refusal = {};  // the status of a query that cannot be carried out
  /// IDs of entities: only objects with one of these can pass.
  std::vector<std::string> entities = {};
  bool byEntity = false;

  bool Pass(const Candidate& candidate) const;
};

Filters MakeFilters(const Call& call);

/// The part of the objects that the message wants back. Lines are always in it, or only when asked
/// for with IncludeLineItems.
View ViewOf(const Call& call, bool alwaysLines);

}  // namespace ostrel::simulator
