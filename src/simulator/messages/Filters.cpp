// The table of makers at the end says what each filter does. A filter becomes a predicate
// over one object, made once for the query with its texts already folded to lower case, so that
// the walk over a list only compares. Filters by entity are resolved to ListIDs at once, which lets
// the query visit the transactions of those entities instead of all.
#include "simulator/messages/Filters.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "simulator/company/CustomFields.h"
#include "simulator/company/Objects.h"
#include "simulator/values/Dates.h"
#include "simulator/values/Decimal.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

Text Folded(std::string_view text) { return LowerCase(FromUtf8(text)); }

using Maker = void (*)(const Element& filter, const Call& call, Filters& filters);

void FilterByMoment(std::string_view text, const Call& call, bool isEnd, Filters& filters) {
  const auto moment = ParseMoment(text, call.now, isEnd);
  if (!moment) return;
  filters.all.emplace_back([bound = *moment, isEnd, now = call.now](const Candidate& candidate) {
    const auto modified = ParseMoment(candidate.object.ChildText("TimeModified"), now, false);
    return modified && (isEnd ? *modified <= bound : *modified >= bound);
  });
}

void FilterFromModified(const Element& filter, const Call& call, Filters& filters) {
  FilterByMoment(filter.text, call, false, filters);
}

void FilterToModified(const Element& filter, const Call& call, Filters& filters) {
  FilterByMoment(filter.text, call, true, filters);
}

void FilterByModifiedRange(const Element& filter, const Call& call, Filters& filters) {
  FilterByMoment(filter.ChildText("FromModifiedDate"), call, false, filters);
  FilterByMoment(filter.ChildText("ToModifiedDate"), call, true, filters);
}

void FilterByStatus(const Element& filter, const Call&, Filters& filters) {
  if (filter.text == "All") return;
  filters.all.emplace_back([wanted = filter.text == "ActiveOnly"](const Candidate& candidate) {
    return candidate.object.isActive == wanted;
  });
}

void FilterByPaidStatus(const Element& filter, const Call&, Filters& filters) {
  if (filter.text == "All") return;
  filters.all.emplace_back([wanted = filter.text == "PaidOnly"](const Candidate& candidate) {
    return IsTrue(candidate.object.ChildText(candidate.kind.sums.paid)) == wanted;
  });
}

bool Matches(TextView text, TextView part, std::string_view criterion) {
  if (criterion == "StartsWith") return text.starts_with(part);
  return criterion == "EndsWith" ? text.ends_with(part) : Contains(text, part);
}

// The object's own name without those of its parents: the last part of the key.
TextView NameIn(const Text& key) {
  const std::size_t separator = key.rfind(kLevelSeparator);
  return separator == Text::npos ? TextView(key) : TextView(key).substr(separator + 1);
}

void FilterByName(const Element& filter, const Call&, Filters& filters) {
  filters.all.emplace_back(
      [part = Folded(filter.ChildText("Name")),
       criterion = std::string(filter.ChildText("MatchCriterion"))](const Candidate& candidate) {
        return Matches(NameIn(candidate.key), part, criterion);
      });
}

void FilterByNameRange(const Element& filter, const Call&, Filters& filters) {
  filters.all.emplace_back([from = Folded(filter.ChildText("FromName")),
                            to = Folded(filter.ChildText("ToName"))](const Candidate& candidate) {
    const TextView name = NameIn(candidate.key);
    return name >= from && (to.empty() || name <= to || name.starts_with(to));
  });
}

void FilterByBalance(const Element& filter, const Call&, Filters& filters) {
  filters.all.emplace_back(
      [amount = Decimal::Of(filter.ChildText("Amount")),
       op = std::string(filter.ChildText("Operator"))](const Candidate& candidate) {
        const Decimal balance = Decimal::Of(candidate.object.ChildText("TotalBalance"));
        if (balance == amount) return op.find("Equal") != std::string::npos;
        return op.starts_with(balance < amount ? "LessThan" : "GreaterThan");
      });
}

void FilterByDate(const Element& filter, const Call& call, Filters& filters) {
  DateRange range = {ParseDate(filter.ChildText("FromTxnDate")),
                     ParseDate(filter.ChildText("ToTxnDate"))};
  if (const Element* macro = filter.Child("DateMacro")) {
    range = RangeOf(macro->text, DayOf(call.now));
  }
  const std::string from = range.from ? DateText(*range.from) : "";
  const std::string to = range.to ? DateText(*range.to) : "9999-12-31";
  filters.all.emplace_back([from, to](const Candidate& candidate) {
    const std::string_view date = candidate.object.ChildText("TxnDate");
    return date >= from && date <= to;
  });
}

void AddEntity(const Target& entity, bool withChildren, const Company& company, Filters& filters) {
  filters.entities.emplace_back(entity.object->ChildText("ListID"));
  if (!withChildren) return;
  const std::string_view name = FullNameOf(*entity.kind, *entity.object);
  for (const Element* child : company.List(*entity.kind).Below(name)) {
    filters.entities.emplace_back(child->ChildText("ListID"));
  }
}

void FilterByEntity(const Element& filter, const Call& call, Filters& filters) {
  const Company& company = call.company.Data();
  const KindList& kinds = KindsNamed("Entity");
  filters.byEntity = true;
  for (const Element& child : filter.children) {
    const Target entity = child.name.starts_with("ListID") ? FindById(company, kinds, child.text)
                                                           : FindByName(company, kinds, child.text);
    if (entity) {
      AddEntity(entity, child.name.ends_with("Children"), company, filters);
    } else if (!filters.refusal) {
      filters.refusal = InvalidReference("Entity", child.text, "EntityFilter");
    }
  }
  auto& entities = filters.entities;
  std::ranges::sort(entities);
  entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
}

void FilterByRefNumber(const Element& filter, const Call&, Filters& filters) {
  filters.all.emplace_back(
      [part = Folded(filter.ChildText("RefNumber")),
       criterion = std::string(filter.ChildText("MatchCriterion"))](const Candidate& candidate) {
        return Matches(Folded(candidate.object.ChildText("RefNumber")), part, criterion);
      });
}

// Numbers are compared as such: "9" is less than "10".
std::pair<std::size_t, Text> RefNumberOrder(std::string_view refNumber) {
  const std::size_t zeros = std::min(refNumber.find_first_not_of('0'), refNumber.size());
  const bool isNumber = refNumber.find_first_not_of("0123456789") == std::string_view::npos;
  const std::string_view digits = isNumber ? refNumber.substr(zeros) : refNumber;
  return {isNumber ? digits.size() : std::numeric_limits<std::size_t>::max(), Folded(digits)};
}

void FilterByRefNumberRange(const Element& filter, const Call&, Filters& filters) {
  const Element* to = filter.Child("ToRefNumber");
  const auto last =
      to && !to->text.empty() ? std::optional(RefNumberOrder(to->text)) : std::nullopt;
  filters.all.emplace_back(
      [from = RefNumberOrder(filter.ChildText("FromRefNumber")), last](const Candidate& candidate) {
        const auto number = RefNumberOrder(candidate.object.ChildText("RefNumber"));
        return number >= from && (!last || number <= *last);
      });
}

constexpr std::pair<std::string_view, Maker> kMakers[] = {
    {"ActiveStatus", FilterByStatus},
    {"FromModifiedDate", FilterFromModified},
    {"ToModifiedDate", FilterToModified},
    {"NameFilter", FilterByName},
    {"NameRangeFilter", FilterByNameRange},
    {"TotalBalanceFilter", FilterByBalance},
    {"ModifiedDateRangeFilter", FilterByModifiedRange},
    {"TxnDateRangeFilter", FilterByDate},
    {"EntityFilter", FilterByEntity},
    {"RefNumberFilter", FilterByRefNumber},
    {"RefNumberRangeFilter", FilterByRefNumberRange},
    {"PaidStatus", FilterByPaidStatus},
};

}  // namespace

bool Filters::Pass(const Candidate& candidate) const {
  BreatheLightly();
  return std::ranges::all_of(all, [&](const Filter& filter) { return filter(candidate); });
}

Filters MakeFilters(const Call& call) {
  Filters filters;
  const bool isList = call.OfKind().category == Category::kList;
  if (isList && !call.element.Child("ActiveStatus")) {
    FilterByStatus({.text = "ActiveOnly"}, call, filters);
  }
  for (const Element& child : call.element.children) {
    const auto maker =
        std::ranges::find(kMakers, child.name, &std::pair<std::string_view, Maker>::first);
    if (maker != std::end(kMakers)) maker->second(child, call, filters);
  }
  return filters;
}

View ViewOf(const Call& call, bool alwaysLines) {
  View view{.version = call.version,
            .lines = alwaysLines || IsTrue(call.element.ChildText("IncludeLineItems")),
            .links = alwaysLines || IsTrue(call.element.ChildText("IncludeLinkedTxns")),
            .only = {},
            .owners = {}};
  for (const Element& child : call.element.children) {
    if (child.name == "IncludeRetElement") view.only.emplace_back(child.text);
    if (child.name == "OwnerID" && view.owners.size() < kMostDefinitions) {
      view.owners.push_back(child.text);
    }
  }
  std::ranges::sort(view.only);
  view.only.erase(std::unique(view.only.begin(), view.only.end()), view.only.end());
  return view;
}

}  // namespace ostrel::simulator
