// A query finds objects in one of two ways. By keys, each key is looked up in an index and the
// objects come in the order of the keys. By filters, the objects are visited in the order of their
// list and returned as far as they pass; a filter by entity narrows the visit to the entity's own
// transactions. An iterator keeps the serials of everything that the filters have found, not the
// objects, so that each page shows its objects as they are when it is asked for.
#include <algorithm>
#include <charconv>
#include <limits>

#include "simulator/company/Accounts.h"
#include "simulator/company/Objects.h"
#include "simulator/messages/Filters.h"
#include "simulator/messages/Messages.h"
#include "simulator/messages/RetWriter.h"
#include "simulator/messages/TransactionRows.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Status.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

// A response has no room for more. A request may repeat a key, which finds its objects each time.
constexpr std::size_t kMostFound = kMaxResponseBytes / std::string_view("<Ret>\n</Ret>\n").size();

using Found = std::vector<Target>;

std::size_t MaxReturned(const Element& query) {
  std::size_t count = kAll;
  const std::string_view text = query.ChildText("MaxReturned");
  std::from_chars(text.data(), text.data() + text.size(), count);
  return count;
}

std::string_view MetaData(const Element& query) {
  const std::string* metaData = query.Find("metaData");
  return metaData ? std::string_view(*metaData) : "NoMetaData";
}

constexpr std::string_view kTransactionQuery = "TransactionQueryRq";

// Written row by row: all rows of a large company together would take too much memory.
Response ReturningRows(const Call& call, const Found& found, Status status) {
  const View view = ViewOf(call, true);
  XmlWriter xml(XmlForm::kResponse);
  std::size_t count = 0;
  for (const Target& target : found) {
    Breathe();
    for (const Element& row : TransactionRows(call, target)) {
      WriteShown(xml, row, view);
      ++count;
    }
  }
  Response response{.status = std::move(status), .body = xml.Take()};
  const std::string_view metaData = MetaData(call.element);
  if (metaData != "NoMetaData") {
    response.attributes.push_back({"retCount", std::to_string(count)});
  }
  if (metaData == "MetaDataOnly") response.body.clear();
  return response;
}

Response Returning(const Call& call, const Found& found, Status status) {
  if (call.message.name == kTransactionQuery) return ReturningRows(call, found, status);
  Response response{.status = std::move(status)};
  const std::string_view metaData = MetaData(call.element);
  if (metaData != "NoMetaData") {
    response.attributes.push_back({"retCount", std::to_string(found.size())});
  }
  if (metaData == "MetaDataOnly") return response;
  const View view = ViewOf(call, false);
  XmlWriter xml(XmlForm::kResponse);
  for (const auto& [kind, object] : found) WriteRet(xml, call.company.Data(), *kind, *object, view);
  response.body = xml.Take();
  return response;
}

// One finder for each sort of key: the objects of a list that have the key.
Found ById(const ObjectList& list, std::string_view id) {
  const Element* object = list.Find(id);
  return object ? Found{{&list.OfKind(), object}} : Found();
}

Found ByName(const ObjectList& list, std::string_view name) {
  const Element* object = list.FindByName(name);
  return object ? Found{{&list.OfKind(), object}} : Found();
}

Found ByRefNumber(const ObjectList& list, std::string_view refNumber) {
  Found found;
  for (const Element* object : list.FindByRefNumber(refNumber)) {
    found.push_back({&list.OfKind(), object});
  }
  return found;
}

Found ByExactRefNumber(const ObjectList& list, std::string_view refNumber) {
  Found found = ByRefNumber(list, refNumber);
  std::erase_if(found, [&](const Target& target) {
    return target.object->ChildText("RefNumber") != refNumber;
  });
  return found;
}

using Finder = Found (*)(const ObjectList& list, std::string_view key);

constexpr std::pair<std::string_view, Finder> kFinders[] = {
    {"ListID", ById},
    {"TxnID", ById},
    {"FullName", ByName},
    {"RefNumber", ByRefNumber},
    {"RefNumberCaseSensitive", ByExactRefNumber},
};

Finder FinderFor(const Element& query) {
  if (query.children.empty()) return nullptr;
  const auto found = std::ranges::find(kFinders, query.children.front().name,
                                       &std::pair<std::string_view, Finder>::first);
  return found == std::end(kFinders) ? nullptr : found->second;
}

// Objects are returned in the order of the keys. A warning names the first key without an object.
Response QueryByKeys(const Call& call, Finder finder) {
  const std::string& name = call.element.children.front().name;
  Status status;
  Found all;
  for (const Element& child : call.element.children) {
    if (child.name != name) break;
    Breathe();
    const std::size_t before = all.size();
    for (const Kind* kind : call.message.kinds) {
      std::ranges::copy(finder(call.company.Data().List(*kind), child.text),
                        std::back_inserter(all));
    }
    if (all.size() > kMostFound) Fail(Hresult::kNotEnoughMemory);
    if (all.size() == before && status.code == 0) status = NotAllFound(child.text);
  }
  return Returning(call, all, std::move(status));
}

template <class Visit>
void VisitCandidates(const ObjectList& list, const Filters& filters, Visit visit) {
  const Kind& kind = list.OfKind();
  if (!filters.byEntity) {
    for (const auto& [key, object] : list.InOrder()) {
      if (filters.Pass({kind, key, object}) && !visit(kind, object)) return;
    }
    return;
  }
  std::vector<const ObjectList::Objects::value_type*> entries;
  for (const std::string& entity : filters.entities) {
    std::ranges::copy(list.FindByEntity(entity), std::back_inserter(entries));
  }
  std::ranges::sort(entries, {}, [](const auto* entry) -> const Text& { return entry->first; });
  entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
  for (const auto* entry : entries) {
    const auto& [key, object] = *entry;
    if (filters.Pass({kind, key, object}) && !visit(kind, object)) return;
  }
}

// Accounts come in the order of the chart of accounts: by type, and within a type by name.
Found InChartOrder(Found found, std::size_t count) {
  std::ranges::stable_sort(found, {}, [](const Target& account) {
    return PlaceInChart(account.object->ChildText("AccountType"));
  });
  found.resize(std::min(found.size(), count));
  return found;
}

// Queries over several kinds whose objects come in one order, not kind by kind.
bool IsMixed(const Call& call) {
  constexpr std::string_view kMixed[] = {"EntityQueryRq", "TermsQueryRq", kTransactionQuery};
  return std::ranges::find(kMixed, call.message.name) != std::end(kMixed);
}

Found InOneOrder(const Found& found, std::size_t count, const Company& company) {
  std::vector<std::pair<Text, Target>> keyed;
  keyed.reserve(found.size());
  for (const Target& target : found) {
    Breathe();
    keyed.emplace_back(company.List(*target.kind).KeyOf(*target.object), target);
  }
  std::ranges::stable_sort(keyed, {}, &std::pair<Text, Target>::first);
  Found ordered;
  for (const auto& [key, target] : keyed) {
    if (ordered.size() == count) break;
    ordered.push_back(target);
  }
  return ordered;
}

Found FindByFilters(const Call& call, const Filters& filters, std::size_t count) {
  const bool isChart = call.OfKind().name == "Account";
  const std::size_t most = isChart || IsMixed(call) ? kAll : count;
  Found found;
  for (const Kind* kind : call.message.kinds) {
    VisitCandidates(call.company.Data().List(*kind), filters,
                    [&](const Kind& ofKind, const ObjectList::Entry& object) {
                      if (found.size() < most) found.push_back({&ofKind, &object});
                      return found.size() < most;
                    });
  }
  if (isChart) return InChartOrder(std::move(found), count);
  return IsMixed(call) ? InOneOrder(found, count, call.company.Data()) : found;
}

Response WithIterator(Response response, const Iterator& iterator) {
  response.attributes.push_back({"iteratorRemainingCount", std::to_string(iterator.Remaining())});
  response.attributes.push_back({"iteratorID", iterator.id});
  return response;
}

// Objects that were deleted since the iterator started are passed over.
Response NextPage(const Call& call, Iterator& iterator) {
  const std::size_t count = std::min(MaxReturned(call.element), iterator.Remaining());
  Found page;
  for (const std::size_t end = iterator.next + count; iterator.next < end; ++iterator.next) {
    const auto& [kind, serial] = iterator.objects[iterator.next];
    if (const Element* object = call.company.Data().List(*kind).FindBySerial(serial)) {
      page.push_back({kind, object});
    }
  }
  Response response =
      WithIterator(Returning(call, page, page.empty() ? NoMatch() : Status()), iterator);
  if (iterator.Remaining() == 0) call.session.End(iterator);
  return response;
}

Response StartIterator(const Call& call, const Filters& filters) {
  Iterator iterator{.id = {}, .query = std::string(call.message.name), .objects = {}};
  for (const Target& target : FindByFilters(call, filters, kAll)) {
    const auto& entry = static_cast<const ObjectList::Entry&>(*target.object);
    iterator.objects.emplace_back(target.kind, entry.serial);
  }
  return NextPage(call, call.session.Keep(std::move(iterator)));
}

Response ContinueIterator(const Call& call) {
  const std::string& id = *call.element.Find("iteratorID");
  Iterator* iterator = call.session.Find(id, call.message.name);
  if (!iterator) return {.status = InvalidIterator(id)};
  if (*call.element.Find("iterator") == "Continue") return NextPage(call, *iterator);
  Response response = WithIterator({}, *iterator);
  call.session.End(*iterator);
  return response;
}

}  // namespace

Response QueryObjects(const Call& call) {
  if (call.element.Find("iteratorID")) return ContinueIterator(call);
  if (const Finder finder = FinderFor(call.element)) return QueryByKeys(call, finder);
  const Filters filters = MakeFilters(call);
  if (filters.refusal) return {.status = *filters.refusal};
  if (call.element.Find("iterator")) return StartIterator(call, filters);
  const Found found = FindByFilters(call, filters, MaxReturned(call.element));
  return Returning(call, found, found.empty() ? NoMatch() : Status());
}

}  // namespace ostrel::simulator
