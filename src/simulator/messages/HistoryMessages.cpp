// What happened to objects since: deletions, which are records of the company, and the marks that
// reconciling an account leaves on transactions and their lines.
// From memory: TxnVoidRq, ClearedStatusModRq.
#include <algorithm>

#include "simulator/company/Draft.h"
#include "simulator/company/Objects.h"
#include "simulator/company/Records.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::int64_t kDaysRemembered = 90;
constexpr std::int64_t kSecondsOfADay = 86'400;
constexpr std::string_view kClearedStatus = "clearedStatus";

struct Period {
  std::int64_t from;
  std::int64_t to;
};

// Without a filter, QuickBooks goes back ninety days.
Period PeriodOf(const Call& call) {
  Period period{call.now.seconds - kDaysRemembered * kSecondsOfADay, INT64_MAX};
  const Element* filter = call.element.Child("DeletedDateRangeFilter");
  if (!filter) return period;
  const auto moment = [&](std::string_view name, bool isEnd, std::int64_t otherwise) {
    return ParseMoment(filter->ChildText(name), call.now, isEnd).value_or(otherwise);
  };
  return {moment("FromDeletedDate", false, period.from), moment("ToDeletedDate", true, period.to)};
}

// The kinds that the message names, in the order of the alphabet.
std::vector<std::string_view> KindsAskedFor(const Call& call, std::string_view typeField) {
  std::vector<std::string_view> kinds;
  for (const Element& child : call.element.children) {
    if (child.name == typeField) kinds.emplace_back(child.text);
  }
  std::ranges::sort(kinds);
  return kinds;
}

Response DeletedObjects(const Call& call, std::string_view typeField, std::string_view retName) {
  const auto kinds = KindsAskedFor(call, typeField);
  const Period period = PeriodOf(call);
  std::vector<Element> found;
  for (const auto& [key, deletion] : Records(call.company.Data(), "Deletion")) {
    Breathe();
    if (!std::ranges::binary_search(kinds, deletion.ChildText("Kind"))) continue;
    const auto time = ParseMoment(deletion.ChildText("TimeDeleted"), call.now, false);
    if (!time || *time < period.from || *time > period.to) continue;
    Element& ret = found.emplace_back(deletion);
    ret.name = retName;
    ret.Drop("RecordID");
    ret.Child("Kind")->name = typeField;
  }
  return Listed(call, found);
}

Element* FindMarked(Element& transaction, std::string_view lineId) {
  if (lineId.empty()) return &transaction;
  const auto found = std::ranges::find_if(transaction.children, [&](const Element& child) {
    return child.ChildText("TxnLineID") == lineId;
  });
  return found == transaction.children.end() ? nullptr : &*found;
}

void Mark(Element& element, const std::string& status) {
  std::erase_if(element.attributes,
                [](const Attribute& attribute) { return attribute.name == kClearedStatus; });
  element.attributes.push_back({std::string(kClearedStatus), status});
}

}  // namespace

Response QueryDeletedListObjects(const Call& call) {
  return DeletedObjects(call, "ListDelType", "ListDeletedRet");
}

Response QueryDeletedTransactions(const Call& call) {
  return DeletedObjects(call, "TxnDelType", "TxnDeletedRet");
}

Response ModifyClearedStatus(const Call& call) {
  const Element& given = call.element.children.front();
  const std::string_view id = given.ChildText("TxnID");
  const Target target = FindById(call.company.Data(), AllKinds(), id);
  if (!target || target.kind->category != Category::kTransaction) return {NotFound(id)};
  const std::string_view lineId = given.ChildText("TxnLineID");
  Draft draft(call.company.Data());
  Element* marked = FindMarked(draft.Edit(*target.kind, id), lineId);
  if (!marked) return {NotFound(lineId)};
  Mark(*marked, std::string(given.ChildText("ClearedStatus")));
  return {CommitFor(call, draft.Take(), target.kind->name)};
}

}  // namespace ostrel::simulator
