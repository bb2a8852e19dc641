// The schema is written from the tables of fields that check the messages. Message types come
// first; each group of fields that they name is queued and written behind them, once however many
// messages use it, and may queue further groups. Runs of neighbouring fields become sequences and
// choices: fields of one choice exclude those of the others, and mixed ones stand in any order.
#include <algorithm>
#include <deque>
#include <initializer_list>
#include <map>
#include <set>
#include <utility>

#include "simulator/messages/Messages.h"
#include "simulator/messages/QbxmlEngine.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kComment =
    "<!-- The requests that Ostrel's stand-in for QuickBooks understands: made from the tables in\n"
    "     src/simulator, not by hand. QuickBooks itself understands more; its developers' kit has\n"
    "     the schema of all of it. -->\n";
constexpr std::string_view kOnError[] = {"stopOnError", "continueOnError", "rollbackOnError"};

using FieldList = std::vector<const Field*>;
using FieldRun = std::span<const Field* const>;
using Words = std::span<const std::string_view>;

// Visits the fields in runs, each as long as its fields belong with the first of the run.
template <class Belongs, class Visit>
void ForEachRun(FieldRun fields, Belongs belongs, Visit visit) {
  while (!fields.empty()) {
    const auto end = std::ranges::find_if_not(
        fields, [&](const Field* field) { return belongs(*fields.front(), *field); });
    const auto length = static_cast<std::size_t>(end - fields.begin());
    visit(fields.first(length));
    fields = fields.subspan(length);
  }
}

bool BothChosen(const Field& a, const Field& b) { return (a.choice != 0) == (b.choice != 0); }

bool SameChoice(const Field& a, const Field& b) { return a.choice == b.choice; }

bool SameNumber(const Field& a, const Field& b) {
  return &a == &b || (a.either != 0 && a.either == b.either) ||
         (a.mixed != 0 && a.mixed == b.mixed);
}

class SchemaWriter {
 public:
  std::string Write() {
    oXml.Prolog();
    oXml.Lines(kComment);
    Open("xs:schema", {{"xmlns:xs", "http://www.w3.org/2001/XMLSchema"}});
    WriteEnvelope();
    WriteCommonTypes();
    for (const Message* message : AllMessages()) WriteMessage(*message);
    // A group may name further groups, which are queued while it is written.
    for (; !oGroups.empty(); oGroups.pop_front()) WriteGroup(oGroups.front());
    for (const auto& [name, words] : oChoices) WriteChoice(name, words);
    oXml.Close();
    return oXml.Take();
  }

 private:
  struct GroupType {
    std::string name;
    std::span<const Field> fields;
    Use use;
  };
  using Attributes = std::vector<Attribute>;

  void Open(std::string_view name, const Attributes& attributes = {}) {
    oXml.Open(name, attributes);
  }
  void Empty(std::string_view name, const Attributes& attributes) { oXml.Empty(name, attributes); }

  void WriteEnvelope() {
    Open("xs:element", {{"name", "QBXML"}});
    Open("xs:complexType");
    Open("xs:sequence");
    Empty("xs:element", {{"name", "QBXMLMsgsRq"}, {"type", "QBXMLMsgsRq"}});
    for (int i = 0; i < 3; ++i) oXml.Close();

    Open("xs:complexType", {{"name", "QBXMLMsgsRq"}});
    Open("xs:choice", {{"maxOccurs", "unbounded"}});
    for (const Message* message : AllMessages()) {
      Empty("xs:element", {{"name", message->name}, {"type", message->name}});
    }
    oXml.Close();
    Empty("xs:attribute",
          {{"name", "onError"}, {"type", Choice("onError", kOnError)}, {"use", "required"}});
    oXml.Close();
  }

  void WriteCommonTypes() {
    // A type whose text may only be white space.
    WriteRestriction("Nothing", "xs:token", {{"xs:maxLength", "0"}});
    WriteRestriction("Something", "xs:token", {{"xs:minLength", "1"}});
    WriteRestriction("Count", "xs:positiveInteger", {{"xs:pattern", "[0-9]{1,9}"}});
    WriteReference();
    WriteNeededReference();
  }

  void WriteRestriction(std::string_view name, std::string_view base,
                        std::initializer_list<std::pair<std::string_view, std::string>> facets) {
    Open("xs:simpleType", {{"name", std::string(name)}});
    Open("xs:restriction", {{"base", std::string(base)}});
    for (const auto& [facet, value] : facets) Empty(facet, {{"value", value}});
    oXml.Close();
    oXml.Close();
  }

  void WriteReference() {
    Open("xs:complexType", {{"name", "Reference"}});
    Open("xs:sequence");
    Empty("xs:element", Occurring("ListID", "xs:string", true, false));
    Empty("xs:element", Occurring("FullName", "xs:string", true, false));
    oXml.Close();
    oXml.Close();
  }

  void WriteNeededReference() {
    Open("xs:complexType", {{"name", "NeededReference"}});
    Open("xs:choice");
    Open("xs:sequence");
    Empty("xs:element", Occurring("ListID", "xs:string", false, false));
    Empty("xs:element", Occurring("FullName", "xs:string", true, false));
    oXml.Close();
    Empty("xs:element", Occurring("FullName", "xs:string", false, false));
    oXml.Close();
    oXml.Close();
  }

  void WriteMessage(const Message& message) {
    Open("xs:complexType", {{"name", message.name}});
    const bool empty = message.fields.empty();
    if (empty) {
      Open("xs:simpleContent");
      Open("xs:extension", {{"base", "Nothing"}});
    } else {
      WriteFields(message.fields, message.use);
    }
    for (const auto& [name, since, values] : AttributesOf(message)) {
      Empty("xs:attribute", {{"name", std::string(name)},
                             {"type", values.empty() ? "xs:string" : Choice(name, values)}});
    }
    for (int open = empty ? 3 : 1; open > 0; --open) oXml.Close();
  }

  void WriteGroup(const GroupType& type) {
    Open("xs:complexType", {{"name", type.name}});
    WriteFields(type.fields, type.use);
    oXml.Close();
  }

  void WriteChoice(const std::string& name, Words words) {
    Open("xs:simpleType", {{"name", name}});
    Open("xs:restriction", {{"base", "xs:token"}});
    for (const std::string_view word : words) {
      Empty("xs:enumeration", {{"value", std::string(word)}});
    }
    oXml.Close();
    oXml.Close();
  }

  void WriteFields(std::span<const Field> fields, Use use) {
    FieldList used;
    for (const Field& field : fields) {
      if (field.uses & use) used.push_back(&field);
    }
    Open("xs:sequence");
    ForEachRun(used, BothChosen, [&](FieldRun run) { WriteRun(run, use); });
    oXml.Close();
  }

  // Fields with a choice: those of one choice exclude the others.
  void WriteRun(FieldRun fields, Use use) {
    if (fields.front()->choice == 0) return WriteSequence(fields, use);
    Open("xs:choice", {{"minOccurs", "0"}});
    ForEachRun(fields, SameChoice, [&](FieldRun alternative) {
      Open("xs:sequence");
      WriteSequence(alternative, use);
      oXml.Close();
    });
    oXml.Close();
  }

  void WriteSequence(FieldRun fields, Use use) {
    ForEachRun(fields, SameNumber, [&](FieldRun run) {
      if (run.size() == 1) return WriteElement(*run.front(), use);
      Attributes occurrence = {{"minOccurs", "0"}};
      if (run.front()->mixed != 0) occurrence.push_back({"maxOccurs", "unbounded"});
      Open("xs:choice", occurrence);
      for (const Field* field : run) WriteElement(*field, use);
      oXml.Close();
    });
  }

  void WriteElement(const Field& field, Use use) {
    const bool needed = (field.required & use) != 0;
    Empty("xs:element",
          Occurring(ElementName(field, use), TypeOf(field, use), !needed, field.repeated));
  }

  static Attributes Occurring(std::string name, std::string type, bool optional, bool repeated) {
    Attributes attributes = {{"name", std::move(name)}, {"type", std::move(type)}};
    if (optional) attributes.push_back({"minOccurs", "0"});
    if (repeated) attributes.push_back({"maxOccurs", "unbounded"});
    return attributes;
  }

  // Amounts, dates and the like are texts here: a malformed one gets a status in the response.
  std::string TypeOf(const Field& field, Use use) {
    const bool needed = (field.required & use) != 0;
    if (!field.children.empty()) return Group(field, use);
    if (field.type == FieldType::kReference) return needed ? "NeededReference" : "Reference";
    if (!field.values.empty()) return Choice(field.name, field.values);
    if (field.type == FieldType::kBoolean) return "xs:boolean";
    if (field.type == FieldType::kCount) return "Count";
    return needed ? "Something" : "xs:string";
  }

  // The type of a group is named after the first field that has these children.
  std::string Group(const Field& field, Use use) {
    const auto key = std::pair(field.children.data(), use);
    const auto known = oGroupNames.find(key);
    if (known != oGroupNames.end()) return known->second;
    std::string name = ElementName(field, use);
    const std::string_view suffix = use == kAdd ? "Add" : use == kMod ? "Mod" : "";
    if (!name.ends_with(suffix)) name += suffix;
    while (!oTaken.insert(name).second) name += '_';
    oGroups.push_back({name, field.children, use});
    return oGroupNames.emplace(key, std::move(name)).first->second;
  }

  std::string Choice(std::string_view field, Words words) {
    const auto known = std::ranges::find_if(
        oChoices, [&](const auto& choice) { return choice.second.data() == words.data(); });
    if (known != oChoices.end()) return known->first;
    std::string name(field);
    while (!oTaken.insert(name).second) name += '_';
    return oChoices.emplace(std::move(name), words).first->first;
  }

  XmlWriter oXml{XmlForm::kFile};
  std::deque<GroupType> oGroups;  // that are named and not yet written
  std::map<std::pair<const Field*, Use>, std::string> oGroupNames;
  std::map<std::string, Words> oChoices;
  std::set<std::string> oTaken = {"Nothing", "Something", "Count", "Reference", "NeededReference"};
};

}  // namespace

std::string QbxmlSchema() { return SchemaWriter().Write(); }

}  // namespace ostrel::simulator
