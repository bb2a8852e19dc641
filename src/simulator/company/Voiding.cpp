#include "simulator/company/Voiding.h"

#include <algorithm>
#include <span>
#include <string>

#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kMark = "VOID:";
// What a transaction applies to others, or others to it.
constexpr std::string_view kApplied[] = {"AppliedToTxnRet", "RefundAppliedToTxnRet", "LinkedTxn"};

bool IsApplied(const Element& child) {
  return std::ranges::find(kApplied, child.name) != std::end(kApplied);
}

// Nothing is worth anything any more, and no order is carried out.
void Forget(Element& object) {
  constexpr std::string_view kForgotten[] = {"cost", "linkTxn", "linkLine", "paid"};
  std::erase_if(object.attributes, [&](const Attribute& attribute) {
    return std::ranges::find(kForgotten, attribute.name) != std::end(kForgotten);
  });
}

void MakeZero(Element& object, std::span<const Field> fields) {
  Forget(object);
  FieldFinder finder(fields, Use::kRet);
  for (Element& child : object.children) {
    Breathe();
    const Field* field = finder.Find(child.name);
    if (!field) continue;
    if (field->type == FieldType::kLine) MakeZero(child, field->children);
    if (field->type == FieldType::kAmount) child.text = "0.00";
    if (field->type == FieldType::kQuantity) child.text = "0";
  }
}

}  // namespace

void MakeVoid(const Kind& kind, Element& transaction) {
  std::erase_if(transaction.children, IsApplied);
  MakeZero(transaction, kind.fields);
  if (!kind.Has("Memo")) return;
  const std::string memo(transaction.ChildText("Memo"));
  if (!memo.starts_with(kMark)) transaction.Set("Memo", std::string(kMark).append(memo));
}

}  // namespace ostrel::simulator
