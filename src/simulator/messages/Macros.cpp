#include "simulator/messages/Macros.h"

#include <cstddef>

#include "simulator/kinds/Meanings.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

using Counts = std::map<std::string_view, std::size_t>;

// The TxnLineID of the line of that sort and number, from 0.
std::string_view LineId(const Element& object, std::string_view sort, std::size_t number) {
  for (const Element& child : object.children) {
    Breathe();
    if (child.children.empty() || BaseName(child.name) != sort) continue;
    if (number-- == 0) return child.ChildText("TxnLineID");
  }
  return {};
}

}  // namespace

// The lines of an object stand in the order of those in its Add.
void Macros::Define(const Element& added, const Element& object) {
  DefineOne(added, object.ChildText("TxnID"));
  Counts counts;
  for (const Element& child : added.children) {
    if (child.children.empty()) continue;
    const std::string_view sort = BaseName(child.name);
    const std::size_t number = counts[sort]++;
    if (child.Find("defMacro")) DefineOne(child, LineId(object, sort, number));
  }
}

void Macros::DefineOne(const Element& named, std::string_view id) {
  const std::string* macro = named.Find("defMacro");
  if (macro && !id.empty()) oIds[*macro] = id;
}

// Definitions of messages bound the depth.
std::optional<Status> Macros::Fill(Element& message) const {
  for (Element& child : message.children) {
    Breathe();
    if (const std::string* macro = child.Find("useMacro")) {
      const auto found = oIds.find(*macro);
      if (found == oIds.end()) return InvalidId(*macro, child.name);
      child.text = found->second;
    }
    if (auto status = Fill(child)) return status;
  }
  return std::nullopt;
}

}  // namespace ostrel::simulator
