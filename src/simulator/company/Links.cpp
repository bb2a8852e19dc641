#include "simulator/company/Links.h"

#include <algorithm>

#include "simulator/company/Objects.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kLinked = "LinkedTxn";

}  // namespace

TxnPlace FindTxn(const Draft& draft, const KindList& kinds, std::string_view id) {
  for (const Kind* kind : kinds) {
    if (draft.Find(*kind, id)) return {kind, std::string(id)};
  }
  return {};
}

void AddLink(const Kind& kind, Element& from, const Kind& toKind, const Element& to,
             std::string_view type, Decimal amount) {
  if (!kind.Has(kLinked)) return;
  Element& link = from.children.emplace_back(Element{.name = std::string(kLinked)});
  link.Add("TxnID", to.ChildText("TxnID"));
  link.Add("TxnType", toKind.name);
  link.Add("TxnDate", to.ChildText(toKind.dateField));
  if (to.Child("RefNumber")) link.Add("RefNumber", to.ChildText("RefNumber"));
  link.Add("LinkType", type);
  link.Add("Amount", amount.ToString(2));
}

void DropLinks(Element& from, std::string_view toId) {
  std::erase_if(from.children, [&](const Element& child) {
    return child.name == kLinked && child.ChildText("TxnID") == toId;
  });
}

void DropLinksTo(const Element& transaction, const Stamp& now, Draft& draft) {
  const std::string id(transaction.ChildText("TxnID"));
  for (const Element& child : transaction.children) {
    if (child.name != kLinked) continue;
    BreatheLightly();
    const Kind* kind = FindKind(child.ChildText("TxnType"));
    const std::string other(child.ChildText("TxnID"));
    if (!kind || !draft.Find(*kind, other)) continue;
    Element& linked = draft.Edit(*kind, other);
    DropLinks(linked, id);
    Touch(linked, now);
  }
}

}  // namespace ostrel::simulator
