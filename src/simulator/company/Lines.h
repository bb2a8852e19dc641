// The lines of a transaction, those inside groups too.
#pragma once

#include <string_view>

#include "simulator/company/Objects.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {

/// Whether it is the name of a group of lines: "InvoiceLineGroupRet", "ItemGroupLineRet".
inline bool IsGroup(std::string_view name) {
  return name.ends_with("LineGroupRet") || name == "ItemGroupLineRet";
}

/// Visits the children of that name, and those of the groups that hold lines.
template <class Parent, class Visit>
void ForEachLine(Parent& transaction, std::string_view name, Visit visit) {
  for (auto& child : transaction.children) {
    BreatheLightly();
    if (child.name == name) {
      visit(child);
    } else if (IsGroup(child.name)) {
      for (auto& inner : child.children) {
        if (inner.name == name) visit(inner);
      }
    }
  }
}

/// The item of a line; nothing for a line without one.
Target ItemOf(const Element& line, const Company& company);

/// Puts the lines of their item groups into the groups of a transaction that hold none yet.
void ExpandGroups(const Kind& kind, Element& transaction, const Company& company);

}  // namespace ostrel::simulator
