// What a message does to a company: a set of these, carried out together or not at all.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/kinds/Kinds.h"
#include "simulator/xml/Element.h"

namespace ostrel::simulator {

struct Change {
  const Kind* kind;
  std::string id;                 // ListID or TxnID
  std::optional<Element> object;  // as it now is, complete and in order; nothing: it is removed
};

using Changes = std::vector<Change>;

}  // namespace ostrel::simulator
