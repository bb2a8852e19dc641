// The table of makers at the end says what each filter does. A filter becomes a predicate
// over one object, made once for the query with its texts already folded to lower case, so that
// the walk over a list only compares. Filters by entity are resolved to ListIDs at once, which lets
// the query visit the transactions of those entities instead of all.
#include "simulator/messages/Filters.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "simulator/company/CustomFields.h"
#include "simulator/company/Objects.h"
#include "simulator/messages/TypeFilters.h"
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
  if (const Element* macro = filter.Child("DateMacro")) {
    const DateRange range = RangeOf(macro->text, DayOf(call.now));
    FilterByMoment(range.from ? DateText(*range.from) : "", call, false, filters);
    FilterByMoment(range.to ? DateText(*range.to) : "", call, true, filters);
  }
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
    const std::string_view date = candidate.object.ChildText(candidate.kind.dateField);
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

// The values that a repeated filter allows in a field. Each of its elements makes the same one.
void FilterByWords(const Element& filter, std::string_view field, const Call& call,
                   Filters& filters) {
  if (&filter != call.element.Child(filter.name)) return;
  std::vector<std::string> words;
  for (const Element& child : call.element.children) {
    if (child.name == filter.name) words.push_back(child.text);
  }
  filters.all.emplace_back([words, field](const Candidate& candidate) {
    return std::ranges::find(words, candidate.object.ChildText(field)) != words.end();
  });
}

void FilterByAccountType(const Element& filter, const Call& call, Filters& filters) {
  FilterByWords(filter, "AccountType", call, filters);
}

void FilterByPaymentMethodType(const Element& filter, const Call& call, Filters& filters) {
  FilterByWords(filter, "PaymentMethodType", call, filters);
}

void FilterByDone(const Element& filter, const Call&, Filters& filters) {
  if (filter.text == "All") return;
  filters.all.emplace_back([wanted = filter.text == "DoneOnly"](const Candidate& candidate) {
    return IsTrue(candidate.object.ChildText("IsDone")) == wanted;
  });
}

void FilterByPending(const Element& filter, const Call&, Filters& filters) {
  if (filter.text == "All") return;
  filters.all.emplace_back([wanted = filter.text == "PendingOnly"](const Candidate& candidate) {
    return IsTrue(candidate.object.ChildText("IsPending")) == wanted;
  });
}

// Dates of one form are compared as texts. An object without the date does not pass.
void FilterByEffectiveDate(const Element& filter, bool isEnd, Filters& filters) {
  filters.all.emplace_back([bound = filter.text, isEnd](const Candidate& candidate) {
    const std::string_view date = candidate.object.ChildText("CurrentEffectiveDate");
    return !date.empty() && (isEnd ? date <= bound : date >= bound);
  });
}

void FilterFromEffective(const Element& filter, const Call&, Filters& filters) {
  FilterByEffectiveDate(filter, false, filters);
}

void FilterToEffective(const Element& filter, const Call&, Filters& filters) {
  FilterByEffectiveDate(filter, true, filters);
}

using Ids = std::set<std::string, std::less<>>;

// Lines note the accounts that they post to in attributes.
bool MentionsAny(const Element& element, const Ids& ids) {
  const auto isOne = [&](const Attribute& attribute) { return ids.contains(attribute.value); };
  if (std::ranges::any_of(element.attributes, isOne)) return true;
  return std::ranges::any_of(element.children, [&](const Element& child) {
    return !child.children.empty() &&
           (ids.contains(child.ChildText("ListID")) || MentionsAny(child, ids));
  });
}

void FilterByMention(Ids ids, Filters& filters) {
  filters.all.emplace_back([ids = std::move(ids)](const Candidate& candidate) {
    return MentionsAny(candidate.object, ids);
  });
}

// The objects that a filter names by ListID or FullName, with those below them where it says so.
Ids IdsNamed(const Element& filter, std::string_view kinds, const Call& call, Filters& filters) {
  const Company& company = call.company.Data();
  Ids ids;
  for (const Element& child : filter.children) {
    const Target target = child.name.starts_with("ListID")
                              ? FindById(company, KindsNamed(kinds), child.text)
                              : FindByName(company, KindsNamed(kinds), child.text);
    if (!target) {
      if (!filters.refusal) filters.refusal = InvalidReference(kinds, child.text, filter.name);
      continue;
    }
    ids.emplace(target.object->ChildText("ListID"));
    if (!child.name.ends_with("Children")) continue;
    for (const Element* below :
         company.List(*target.kind).Below(FullNameOf(*target.kind, *target.object))) {
      ids.emplace(below->ChildText("ListID"));
    }
  }
  return ids;
}

// Filters by what an object refers to, and the kinds of that.
constexpr std::pair<std::string_view, std::string_view> kMentioned[] = {
    {"AccountFilter", "Account"},
    {"TransactionAccountFilter", "Account"},
    {"ItemFilter", "Item"},
    {"TransactionItemFilter", "Item"},
    {"ItemRef", "Item"},
    {"ClassFilter", "Class"},
    {"TransactionClassFilter", "Class"},
    {"CurrencyFilter", "Currency"},
    {"SiteFilter", "InventorySite"},
    {"TimeTrackingEntityFilter", "Entity"},
    {"TransactionEntityFilter", "Entity"},
};

// All objects of some kinds, of an account type or of another.
Ids IdsOfType(const Element& type, const Call& call) {
  const Company& company = call.company.Data();
  Ids ids;
  for (const Kind* kind : KindsOfType(type)) {
    for (const auto& [key, object] : company.List(*kind).InOrder()) {
      BreatheLightly();
      const bool isAccount = type.name == "AccountTypeFilter";
      if (isAccount && !IsOfAccountType(object.ChildText("AccountType"), type.text)) continue;
      ids.emplace(object.ChildText("ListID"));
    }
  }
  return ids;
}

void FilterByMentioned(const Element& filter, const Call& call, Filters& filters) {
  const auto row = std::ranges::find(kMentioned, filter.name,
                                     &std::pair<std::string_view, std::string_view>::first);
  const bool isType =
      !filter.children.empty() && filter.children.front().name.ends_with("TypeFilter");
  if (filter.children.empty()) return;
  FilterByMention(isType ? IdsOfType(filter.children.front(), call)
                         : IdsNamed(filter, row->second, call, filters),
                  filters);
}

void FilterByTxnType(const Element& filter, const Call&, Filters& filters) {
  std::vector<std::string> types;
  for (const Element& child : filter.children) {
    if (child.text == "All") return;
    types.push_back(child.text);
  }
  filters.all.emplace_back([types](const Candidate& candidate) {
    return std::ranges::find(types, candidate.kind.name) != types.end();
  });
}

bool IsPostingKind(const Kind& kind) {
  return std::ranges::any_of(kind.postings, [](const Posting& posting) {
    return posting.field.empty() || posting.field == "QuantityOnHand";
  });
}

void FilterByPosting(const Element& filter, const Call&, Filters& filters) {
  if (filter.text == "Either") return;
  filters.all.emplace_back([wanted = filter.text == "Posting"](const Candidate& candidate) {
    const bool isPending = IsTrue(candidate.object.ChildText("IsPending"));
    return (IsPostingKind(candidate.kind) && !isPending) == wanted;
  });
}

void FilterByOpen(const Element& filter, const Call&, Filters& filters) {
  if (filter.text == "Either") return;
  filters.all.emplace_back([wanted = filter.text == "Open"](const Candidate& candidate) {
    const std::string_view open = candidate.kind.sums.open;
    return (!open.empty() && !Decimal::Of(candidate.object.ChildText(open)).IsZero()) == wanted;
  });
}

// Behind MaxReturned, numbers are one filter among others.
void FilterByRefNumbers(const Element& filter, const Call& call, Filters& filters) {
  if (&filter != call.element.Child(filter.name)) return;
  const bool isExact = filter.name == "RefNumberCaseSensitive";
  std::set<Text> numbers;
  for (const Element& child : call.element.children) {
    if (child.name != filter.name) continue;
    numbers.insert(isExact ? FromUtf8(child.text) : Folded(child.text));
  }
  filters.all.emplace_back([numbers, isExact](const Candidate& candidate) {
    const std::string_view number = candidate.object.ChildText("RefNumber");
    return numbers.contains(isExact ? FromUtf8(number) : Folded(number));
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
    {"AccountType", FilterByAccountType},
    {"PaymentMethodType", FilterByPaymentMethodType},
    {"DoneStatus", FilterByDone},
    {"PendingStatus", FilterByPending},
    {"FromEffectiveDate", FilterFromEffective},
    {"ToEffectiveDate", FilterToEffective},
    {"AccountFilter", FilterByMentioned},
    {"ItemFilter", FilterByMentioned},
    {"ItemRef", FilterByMentioned},
    {"ClassFilter", FilterByMentioned},
    {"CurrencyFilter", FilterByMentioned},
    {"SiteFilter", FilterByMentioned},
    {"TimeTrackingEntityFilter", FilterByMentioned},
    {"TransactionEntityFilter", FilterByMentioned},
    {"TransactionAccountFilter", FilterByMentioned},
    {"TransactionItemFilter", FilterByMentioned},
    {"TransactionClassFilter", FilterByMentioned},
    {"TransactionModifiedDateRangeFilter", FilterByModifiedRange},
    {"TransactionDateRangeFilter", FilterByDate},
    {"TransactionTypeFilter", FilterByTxnType},
    {"TransactionPostingStatusFilter", FilterByPosting},
    {"TransactionPaidStatusFilter", FilterByOpen},
    {"RefNumber", FilterByRefNumbers},
    {"RefNumberCaseSensitive", FilterByRefNumbers},
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
