// The schema is written from the definitions that check the messages. Message types come first;
// each content that they name is queued and written behind them, once however many messages use it,
// and may queue further ones.
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
    "<!-- The requests that Ostrel's stand-in for QuickBooks understands: made from the "
    "definitions in\n"
    "     src/simulator/grammar, not by hand. -->\n";
constexpr std::string_view kResponseData[] = {"includeAll", "includeNone"};
constexpr std::string_view kOnError[] = {"stopOnError", "continueOnError", "rollbackOnError"};

using Words = std::span<const std::string_view>;

class SchemaWriter {
 public:
  std::string Write() {
    oXml.Prolog();
    oXml.Lines(kComment);
    Open("xs:schema", {{"xmlns:xs", "http://www.w3.org/2001/XMLSchema"}});
    WriteEnvelope();
    WriteCommonTypes();
    for (const Message* message : AllMessages()) WriteMessage(*message);
    // A content may name further ones, which are queued while it is written.
    for (; !oQueue.empty(); oQueue.pop_front()) WriteContent(*oQueue.front());
    for (const auto& [name, words] : oChoices) WriteChoice(name, words);
    oXml.Close();
    return oXml.Take();
  }

 private:
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
    Open("xs:choice", {{"minOccurs", "0"}, {"maxOccurs", "unbounded"}});
    for (const Message* message : AllMessages()) {
      Empty("xs:element",
            {{"name", std::string(message->name)}, {"type", std::string(message->name)}});
    }
    oXml.Close();
    Empty("xs:attribute",
          {{"name", "onError"}, {"type", Choice("onError", kOnError)}, {"use", "required"}});
    for (const char* name : {"newMessageSetID", "oldMessageSetID"}) {
      Empty("xs:attribute", {{"name", name}, {"type", "xs:string"}});
    }
    Empty("xs:attribute",
          {{"name", "responseData"}, {"type", Choice("responseData", kResponseData)}});
    oXml.Close();
  }

  void WriteCommonTypes() {
    // A type whose text may only be white space.
    WriteRestriction("Nothing", "xs:token", {{"xs:maxLength", "0"}});
    WriteRestriction("Count", "xs:positiveInteger", {{"xs:pattern", "[0-9]{1,9}"}});
    WriteMacroId();
  }

  void WriteRestriction(std::string_view name, std::string_view base,
                        std::initializer_list<std::pair<std::string_view, std::string>> facets) {
    Open("xs:simpleType", {{"name", std::string(name)}});
    Open("xs:restriction", {{"base", std::string(base)}});
    for (const auto& [facet, value] : facets) Empty(facet, {{"value", value}});
    oXml.Close();
    oXml.Close();
  }

  // An ID, or the name of a macro that stands for it.
  void WriteMacroId() {
    Open("xs:complexType", {{"name", "MacroId"}});
    Open("xs:simpleContent");
    Open("xs:extension", {{"base", "xs:string"}});
    Empty("xs:attribute", {{"name", "useMacro"}, {"type", "xs:string"}});
    for (int i = 0; i < 3; ++i) oXml.Close();
  }

  void WriteMessage(const Message& message) {
    Open("xs:complexType", {{"name", std::string(message.name)}});
    const bool empty = message.content->particles.empty();
    if (empty) {
      Open("xs:simpleContent");
      Open("xs:extension", {{"base", "Nothing"}});
    } else {
      WriteParticles(*message.content);
    }
    for (const auto& [name, since, values] : AttributesOf(message)) {
      Empty("xs:attribute", {{"name", std::string(name)},
                             {"type", values.empty() ? "xs:string" : Choice(name, values)}});
    }
    for (int open = empty ? 3 : 1; open > 0; --open) oXml.Close();
  }

  void WriteContent(const Content& content) {
    Open("xs:complexType", {{"name", std::string(content.name)}});
    WriteParticles(content);
    for (const std::string_view name : content.attributes) {
      Empty("xs:attribute", {{"name", std::string(name)}, {"type", "xs:string"}});
    }
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

  void WriteParticles(const Content& content, const Attributes& occurrence = {}) {
    Open(content.isChoice ? "xs:choice" : "xs:sequence", occurrence);
    for (const Particle& particle : content.particles) {
      Attributes attributes = OccurrenceOf(particle);
      if (particle.name.empty()) {
        WriteParticles(*particle.content, attributes);
        continue;
      }
      attributes.insert(attributes.begin(),
                        {{"name", std::string(particle.name)}, {"type", TypeOf(particle)}});
      Empty("xs:element", attributes);
    }
    oXml.Close();
  }

  static Attributes OccurrenceOf(const Particle& particle) {
    Attributes attributes;
    if (particle.least != 1) attributes.push_back({"minOccurs", std::to_string(particle.least)});
    if (particle.most == Particle::kAnyNumber) {
      attributes.push_back({"maxOccurs", "unbounded"});
    } else if (particle.most != 1) {
      attributes.push_back({"maxOccurs", std::to_string(particle.most)});
    }
    return attributes;
  }

  // Amounts, dates and the like are texts here: a malformed one gets a status in the response.
  std::string TypeOf(const Particle& particle) {
    if (particle.content) return TypeOf(*particle.content);
    if (particle.mayUseMacro) return "MacroId";
    if (particle.type == FieldType::kWord) return Choice(particle.name, particle.words);
    if (particle.type == FieldType::kBoolean) return "xs:boolean";
    return particle.type == FieldType::kCount ? "Count" : "xs:string";
  }

  std::string TypeOf(const Content& content) {
    if (oTaken.insert(std::string(content.name)).second) oQueue.push_back(&content);
    return std::string(content.name);
  }

  std::string Choice(std::string_view field, Words words) {
    const auto known = std::ranges::find_if(
        oChoices, [&](const auto& choice) { return choice.second.data() == words.data(); });
    if (known != oChoices.end()) return known->first;
    std::string name = std::string(field).append("Words");
    while (!oTaken.insert(name).second) name += '_';
    return oChoices.emplace(std::move(name), words).first->first;
  }

  XmlWriter oXml{XmlForm::kFile};
  std::deque<const Content*> oQueue;  // that are named and not yet written
  std::map<std::string, Words> oChoices;
  std::set<std::string> oTaken = {"Nothing", "Count", "MacroId"};
};

}  // namespace

std::string QbxmlSchema() { return SchemaWriter().Write(); }

}  // namespace ostrel::simulator
