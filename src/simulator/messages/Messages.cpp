// The catalog gives each message that qbXML defines its handler: a handful are named one by one,
// the others are the Add, Mod and Query of a kind, or the Query of a family of kinds. Those that
// are left are known but not carried out. The second half is the steps that the handlers share: a
// change is found, merged and committed, and its response shows the object as it is stored.
#include "simulator/messages/Messages.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <utility>

#include "platform/SystemError.h"
#include "simulator/company/Defaults.h"
#include "simulator/company/Objects.h"
#include "simulator/messages/Filters.h"
#include "simulator/messages/RetWriter.h"
#include "simulator/messages/TransactionRows.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kNotMerged[] = {"ListID", "TxnID", "TxnLineID", "EditSequence"};

struct Version {
  std::string_view name;
  int majorVersion = 0;  // of the first product that has it, where that is known
};
constexpr Version kVersions[] = {{"1.0"},  {"1.1"},      {"2.0"},      {"2.1"},     {"3.0"},
                                 {"4.0"},  {"4.1"},      {"5.0"},      {"6.0"},     {"7.0"},
                                 {"8.0"},  {"9.0"},      {"10.0"},     {"11.0"},    {"12.0"},
                                 {"13.0"}, {"14.0", 31}, {"15.0", 32}, {"16.0", 33}};

using Handler = Response (*)(const Call& call);
using Catalog = std::map<std::string_view, Message>;

Response FindNothing(const Call&) { return {.status = NoMatch()}; }

Response Refuse(const Call& call) { return {.status = NotHere(call.message.name)}; }

constexpr std::pair<std::string_view, Handler> kHandlers[] = {
    {"HostQueryRq", QueryHost},
    {"CompanyQueryRq", QueryCompany},
    {"ListDelRq", DeleteListObject},
    {"TxnDelRq", DeleteTransaction},
    {"TxnVoidRq", VoidTransaction},
    {"ListMergeRq", MergeListObjects},
    {"ListDeletedQueryRq", QueryDeletedListObjects},
    {"TxnDeletedQueryRq", QueryDeletedTransactions},
    {"ClearedStatusModRq", ModifyClearedStatus},
    {"PreferencesQueryRq", QueryPreferences},
    {"CompanyActivityQueryRq", QueryCompanyActivity},
    {"SpecialAccountAddRq", AddSpecialAccount},
    {"SpecialItemAddRq", AddSpecialItem},
    {"AccountTaxLineInfoQueryRq", QueryTaxLines},
    {"BarCodeQueryRq", QueryBarCodes},
    {"ListDisplayAddRq", RefuseToShow},
    {"ListDisplayModRq", RefuseToShow},
    {"TxnDisplayAddRq", RefuseToShow},
    {"TxnDisplayModRq", RefuseToShow},
    {"DataExtDefAddRq", AddCustomFieldDefinition},
    {"DataExtDefModRq", ModifyCustomFieldDefinition},
    {"DataExtDefDelRq", DeleteCustomFieldDefinition},
    {"DataExtDefQueryRq", QueryCustomFieldDefinitions},
    {"DataExtAddRq", AddCustomField},
    {"DataExtModRq", ModifyCustomField},
    {"DataExtDelRq", DeleteCustomField},
    {"GeneralSummaryReportQueryRq", QueryReport},
    {"GeneralDetailReportQueryRq", QueryReport},
    {"AgingReportQueryRq", QueryReport},
    {"CustomSummaryReportQueryRq", QueryReport},
    {"CustomDetailReportQueryRq", QueryReport},
    // A report without rows would look as if there were nothing to tell.
    {"BudgetSummaryReportQueryRq", Refuse},
    {"JobReportQueryRq", Refuse},
    {"PayrollDetailReportQueryRq", Refuse},
    {"PayrollSummaryReportQueryRq", Refuse},
    {"TimeReportQueryRq", Refuse},
};

// Whether the message is the verb of a kind or, where it may be, of a family.
bool IsAbout(Message& message, std::string_view verb) {
  const std::string_view stem = message.name.substr(0, message.name.size() - 2);
  if (!stem.ends_with(verb)) return false;
  const std::string_view name = stem.substr(0, stem.size() - verb.size());
  if (verb == "Query") {
    message.kinds = KindsNamed(name);
  } else if (const Kind* kind = FindKind(name)) {
    message.kinds = {kind};
  }
  return !message.kinds.empty();
}

Handler HandlerOf(Message& message) {
  if (message.name == "TransactionQueryRq") {
    message.kinds = QueriedTransactionKinds();
    return QueryObjects;
  }
  const auto named =
      std::ranges::find(kHandlers, message.name, &std::pair<std::string_view, Handler>::first);
  if (named != std::end(kHandlers)) return named->second;
  if (IsAbout(message, "Query")) return QueryObjects;
  const auto isList = [&] { return message.kinds.front()->category == Category::kList; };
  if (IsAbout(message, "Add")) return isList() ? AddListObject : AddTransaction;
  if (IsAbout(message, "Mod")) return isList() ? ModifyListObject : ModifyTransaction;
  return message.name.ends_with("QueryRq") ? FindNothing : Refuse;
}

Catalog MakeCatalog() {
  Catalog catalog;
  for (const std::string_view name : MessageNames()) {
    Message message{.name = name, .content = FindContent(name), .reply = nullptr};
    message.reply = HandlerOf(message);
    catalog.emplace(name, std::move(message));
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
    {.name = "metaData", .since = 40, .values = kMetaData},
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

// What stands in place of another field takes it away.
void DropAlternatives(Element& object, const Field* field, std::span<const Field> fields) {
  if (!field || field->either == 0) return;
  for (const Field& other : fields) {
    if (other.either == field->either && &other != field) object.Drop(other.name);
  }
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

Treatment TreatmentOf(const Message& message) {
  if (message.reply == FindNothing) return Treatment::kAnsweredEmpty;
  const bool isRefused = message.reply == Refuse || message.reply == RefuseToShow;
  return isRefused ? Treatment::kRefused : Treatment::kCarriedOut;
}

std::vector<AttributeRule> AttributesOf(const Message& message) {
  std::vector<AttributeRule> rules;
  for (const AttributeRule& rule : kAttributes) {
    const auto& defined = message.content->attributes;
    const bool isDefined = std::ranges::find(defined, rule.name) != defined.end();
    if (isDefined || rule.name == "requestID") rules.push_back(rule);
  }
  return rules;
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

Response Listed(const Call& call, const std::vector<Element>& rets) {
  Response response{.status = rets.empty() ? NoMatch() : Status()};
  const std::string* metaData = call.element.Find("metaData");
  if (metaData && *metaData != "NoMetaData") {
    response.attributes.push_back({"retCount", std::to_string(rets.size())});
    if (*metaData == "MetaDataOnly") return response;
  }
  const View view = ViewOf(call, true);
  XmlWriter xml(XmlForm::kResponse);
  for (const Element& ret : rets) {
    Breathe();
    WriteShown(xml, ret, view);
  }
  response.body = xml.Take();
  return response;
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

std::optional<Status> FindLack(const Kind& kind, const Element& object) {
  const Field* missing = FindMissing(object, kind.fields);
  if (!missing) return std::nullopt;
  return CannotSave(Described(kind, object),
                    std::string("The field \"").append(missing->name).append("\" is missing."));
}

Response Saved(const Call& call, const Changes& changes, const Element& object) {
  const Kind& kind = call.OfKind();
  Status status = CommitFor(call, changes, Described(kind, object));
  if (status.IsError()) return {.status = std::move(status)};
  const ObjectList& objects = call.company.Data().List(kind);
  const Element& saved = *objects.Find(object.ChildText(kind.IdField()));
  call.macros.Define(call.element.children.front(), saved);
  return {.status = {}, .body = OneRet(call, kind, saved)};
}

Element Cleaned(const Element& source) {
  Element cleaned{.name = source.name, .text = source.text};
  for (const Element& child : source.children) {
    Element copy = Cleaned(child);
    if (!copy.text.empty() || !copy.children.empty()) cleaned.children.push_back(std::move(copy));
  }
  return cleaned;
}

void NameAsHeld(Element& object, std::span<const Field> fields, Use use) {
  FieldFinder finder(fields, use);
  std::erase_if(object.children, [&](Element& child) {
    const Field* field = finder.Find(child.name);
    if (!field) return false;
    if (field->name.empty()) return true;
    child.name = field->name;
    if (field->type != FieldType::kReference) NameAsHeld(child, field->children, use);
    return false;
  });
}

void Merge(Element& object, const Element& given, std::span<const Field> fields) {
  for (const Element& child : given.children) {
    if (std::ranges::find(kNotMerged, child.name) != std::end(kNotMerged)) continue;
    const Field* field = FindField(fields, child.name, Use::kRet);
    Element* held = object.Child(child.name);
    if (held && field && field->type == FieldType::kGroup && !field->isMany) {
      Merge(*held, child, field->children);
      if (held->children.empty()) object.Drop(child.name);
      continue;
    }
    if (!field || !field->isMany || &child == given.Child(child.name)) object.Drop(child.name);
    DropAlternatives(object, field, fields);
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

std::vector<std::string_view> SupportedVersions(const Company& company) {
  int majorVersion = 0;
  const std::string product = company.MajorVersion();
  std::from_chars(product.data(), product.data() + product.size(), majorVersion);
  std::vector<std::string_view> versions;
  for (const Version& version : kVersions) {
    if (version.majorVersion <= majorVersion) versions.push_back(version.name);
  }
  return versions;
}

}  // namespace ostrel::simulator
