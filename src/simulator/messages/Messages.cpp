// Every message is made from the tables of kinds: each kind has an Add, a Mod and a Query, and each
// family of kinds a Query of its own; only a handful are named one by one. The catalog is made once
// and says for each message its elements, attributes and handler, so that checking a request, the
// schema and the handlers cannot disagree. The second half is the steps that the handlers share: a
// change is found, merged and committed, and its response shows the object as it is stored.
#include "simulator/messages/Messages.h"

#include <algorithm>
#include <map>

#include "platform/SystemError.h"
#include "simulator/company/Objects.h"
#include "simulator/messages/Filters.h"
#include "simulator/messages/RetWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kNotMerged[] = {"ListID", "TxnID", "TxnLineID", "EditSequence"};
constexpr std::string_view kVersions[] = {"1.0",  "1.1",  "2.0",  "2.1", "3.0", "4.0",
                                          "4.1",  "5.0",  "6.0",  "7.0", "8.0", "9.0",
                                          "10.0", "11.0", "12.0", "13.0"};

constexpr Field kIncludeRetElement = {
    .name = "IncludeRetElement", .maxLength = 50, .repeated = true, .since = 40};

// Names owners of data extensions, which the objects here do not have.
constexpr Field kOwnerId = {.name = "OwnerID", .repeated = true, .since = 20};

using Catalog = std::map<std::string, Message, std::less<>>;

void Enter(Catalog& catalog, Message message) {
  std::string name = message.name;
  Message& entered = catalog.emplace(std::move(name), std::move(message)).first->second;
  if (entered.group.empty()) return;
  entered.fields.front().name = entered.group;  // which lives as long
}

Message OneObjectMessage(const Kind& kind, std::string_view verb, Use use,
                         Response (*reply)(const Call&)) {
  std::string group = std::string(kind.name).append(verb);
  return {.name = group + "Rq",
          .reply = reply,
          .use = use,
          .kinds = {&kind},
          .group = group,
          .fields = {
              {.name = {}, .type = FieldType::kGroup, .required = kAnyUse, .children = kind.fields},
              kIncludeRetElement}};
}

Message QueryMessage(std::string_view name, const KindList& kinds) {
  std::vector<Field> fields = FiltersOf(*kinds.front());
  fields.push_back(kIncludeRetElement);
  fields.push_back(kOwnerId);
  return {.name = std::string(name).append("QueryRq"),
          .reply = QueryObjects,
          .kinds = kinds,
          .fields = std::move(fields)};
}

std::span<const std::string_view> NamesOf(Category category) {
  static std::map<Category, std::vector<std::string_view>> names;
  auto& known = names[category];
  if (!known.empty()) return known;
  for (const Kind* kind : AllKinds()) {
    if (kind->category == category) known.push_back(kind->name);
  }
  return known;
}

Message DeleteMessage(Category category, std::string_view name, std::string_view type,
                      std::string_view id, Response (*reply)(const Call&)) {
  return {.name = std::string(name),
          .reply = reply,
          .fields = {{.name = type, .required = kAnyUse, .values = NamesOf(category)},
                     {.name = id, .type = FieldType::kId, .required = kAnyUse}}};
}

Catalog MakeCatalog() {
  Catalog catalog;
  Enter(catalog, {.name = "HostQueryRq", .reply = QueryHost});
  Enter(catalog, {.name = "CompanyQueryRq", .reply = QueryCompany});
  Enter(catalog,
        DeleteMessage(Category::kList, "ListDelRq", "ListDelType", "ListID", DeleteListObject));
  Enter(catalog, DeleteMessage(Category::kTransaction, "TxnDelRq", "TxnDelType", "TxnID",
                               DeleteTransaction));
  for (const Kind* kind : AllKinds()) {
    const bool isList = kind->category == Category::kList;
    Enter(catalog, OneObjectMessage(*kind, "Add", kAdd, isList ? AddListObject : AddTransaction));
    Enter(catalog,
          OneObjectMessage(*kind, "Mod", kMod, isList ? ModifyListObject : ModifyTransaction));
    Enter(catalog, QueryMessage(kind->name, {kind}));
    if (!kind->family.empty()) Enter(catalog, QueryMessage(kind->family, NameSpace(*kind)));
  }
  return catalog;
}

const Catalog& TheCatalog() {
  static const Catalog catalog = MakeCatalog();
  return catalog;
}

constexpr std::string_view kMetaData[] = {"NoMetaData", "MetaDataOnly", "MetaDataAndResponseData"};
constexpr std::string_view kIterator[] = {"Start", "Continue", "Stop"};
constexpr AttributeRule kAttributes[] = {
    {.name = "requestID"},
    {.name = "metaData", .since = 40, .values = kMetaData},  // of queries only, from here on
    {.name = "iterator", .since = 50, .values = kIterator},
    {.name = "iteratorID", .since = 50},
};

bool MayHave(const Message& message, const Attribute& attribute, int version) {
  const auto rules = AttributesOf(message);
  const auto rule = std::ranges::find(rules, attribute.name, &AttributeRule::name);
  if (rule == rules.end() || version < rule->since) return false;
  return rule->values.empty() ||
         std::ranges::find(rule->values, attribute.value) != rule->values.end();
}

// An iterator pages through what filters find, and is named from its second page on.
bool IteratorFits(const Element& element) {
  const std::string* iterator = element.Find("iterator");
  if (!iterator) return !element.Find("iteratorID");
  if ((*iterator == "Start") == (element.Find("iteratorID") != nullptr)) return false;
  return *iterator == "Stop" || element.Child("MaxReturned");
}

}  // namespace

const Message* FindMessage(std::string_view name) {
  const auto found = TheCatalog().find(name);
  return found == TheCatalog().end() ? nullptr : &found->second;
}

std::vector<const Message*> AllMessages() {
  std::vector<const Message*> messages;
  for (const auto& [name, message] : TheCatalog()) messages.push_back(&message);
  return messages;
}

std::span<const AttributeRule> AttributesOf(const Message& message) {
  const std::span all(kAttributes);
  return message.reply == QueryObjects ? all : all.first(1);
}

bool HasRightAttributes(const Message& message, const Element& element, int version) {
  return std::ranges::all_of(
             element.attributes,
             [&](const Attribute& attribute) { return MayHave(message, attribute, version); }) &&
         IteratorFits(element);
}

std::string OneRet(const Call& call, const Kind& kind, const Element& object) {
  XmlWriter xml(XmlForm::kResponse);
  WriteRet(xml, call.company.Data(), kind, object, ViewOf(call, true));
  return xml.Take();
}

std::string Described(const Kind& kind, const Element& object) {
  if (kind.category == Category::kTransaction) return std::string(kind.name);
  return std::string(kind.title)
      .append(" list, element \"")
      .append(FullNameOf(kind, object))
      .append("\"");
}

Status CommitFor(const Call& call, const Changes& changes, std::string_view described) {
  const int error = call.company.Commit(changes);
  if (error == 0) return {};
  if (error == platform::kFileTooLarge) {
    return CannotSave(described, "It holds more than can be saved at once.");
  }
  return CannotSave(described, ToUtf8(platform::SystemErrorText(error)));
}

Response Saved(const Call& call, const Changes& changes, const Element& object) {
  const Kind& kind = call.OfKind();
  Status status = CommitFor(call, changes, Described(kind, object));
  if (status.IsError()) return {.status = std::move(status)};
  const ObjectList& objects = call.company.Data().List(kind);
  return {.status = {},
          .body = OneRet(call, kind, *objects.Find(object.ChildText(kind.IdField())))};
}

Element Cleaned(const Element& source) {
  Element cleaned{.name = source.name, .text = source.text};
  for (const Element& child : source.children) {
    Element copy = Cleaned(child);
    if (!copy.text.empty() || !copy.children.empty()) cleaned.children.push_back(std::move(copy));
  }
  return cleaned;
}

void DropPassing(Element& object, std::span<const Field> fields) {
  std::erase_if(object.children, [&](const Element& child) {
    return FindField(fields, child.name, kAdd) && !FindField(fields, child.name, kRet);
  });
}

void Merge(Element& object, const Element& given) {
  for (const Element& child : given.children) {
    if (std::ranges::find(kNotMerged, child.name) != std::end(kNotMerged)) continue;
    object.Drop(child.name);
    Element copy = Cleaned(child);
    if (!copy.text.empty() || !copy.children.empty()) object.children.push_back(std::move(copy));
  }
}

std::optional<Response> FindForChange(const Call& call, const Element& given,
                                      const Element*& object) {
  const Kind& kind = call.OfKind();
  const std::string_view id = given.ChildText(kind.IdField());
  object = call.company.Data().List(kind).Find(id);
  if (!object) return Response{NotFound(id)};
  const std::string_view editSequence = given.ChildText("EditSequence");
  if (editSequence == object->ChildText("EditSequence")) return std::nullopt;
  return Response{.status = OutOfDate(editSequence), .body = OneRet(call, kind, *object)};
}

std::span<const std::string_view> SupportedVersions() { return kVersions; }

}  // namespace ostrel::simulator
