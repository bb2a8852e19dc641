// A request is checked as a whole before its first message is processed: its XML, its version, its
// envelope, and every message against the table of its fields. Any fault there raises an error and
// nothing has changed. From then on a failure belongs to one message and stands in its response as
// a status; onError decides whether the messages behind it are processed.
#include "simulator/messages/QbxmlEngine.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

#include "simulator/messages/Macros.h"
#include "simulator/messages/MessageSets.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Status.h"
#include "simulator/xml/XmlReader.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxElements = 500'000;

XmlDocument Parse(TextView request) {
  XmlDocument document;
  switch (ReadXmlText(request, kMaxElements, document)) {
    case XmlFault::kNone:
      return document;
    case XmlFault::kTooLarge:
      Fail(Hresult::kNotEnoughMemory);
    case XmlFault::kMalformed:
      break;
  }
  Fail(Hresult::kParseError);
}

// The version in  version="3.0"  or  version = '3.0' ; empty when the data has another form.
std::string_view VersionIn(std::string_view data) {
  constexpr std::string_view kKey = "version";
  data = Trimmed(data);
  if (!data.starts_with(kKey)) return {};
  data = Trimmed(data.substr(kKey.size()));
  if (!data.starts_with('=')) return {};
  data = Trimmed(data.substr(1));
  const bool quoted = data.size() > 2 && (data.front() == '"' || data.front() == '\'') &&
                      data.back() == data.front();
  return quoted ? data.substr(1, data.size() - 2) : std::string_view();
}

// The version in  -//INTUIT//DTD QBXML QBD 2.0//EN .
std::string_view VersionInPublicId(std::string_view id) {
  constexpr std::string_view kBegin = "-//INTUIT//DTD QBXML QBD ";
  constexpr std::string_view kEnd = "//EN";
  if (!id.starts_with(kBegin) || !id.ends_with(kEnd)) return {};
  id.remove_prefix(kBegin.size());
  return id.substr(0, id.size() - std::min(id.size(), kEnd.size()));
}

std::string_view VersionIn(const XmlDocument& document) {
  const auto& instructions = document.instructions;
  const auto qbxml = std::ranges::find(instructions, "qbxml", &Instruction::target);
  return qbxml == instructions.end() ? VersionInPublicId(document.publicId)
                                     : VersionIn(qbxml->data);
}

// Returns the version times ten: 130 for "13.0".
int CheckVersion(const XmlDocument& document, const Company& company) {
  const std::string_view version = VersionIn(document);
  if (version.empty()) Fail(Hresult::kParseError);
  const auto supported = SupportedVersions(company);
  if (std::ranges::find(supported, version) == supported.end()) Fail(Hresult::kUnknownVersion);
  int major = 0;
  const char* point = std::from_chars(version.data(), version.data() + version.size(), major).ptr;
  return 10 * major + (point[1] - '0');
}

// Returns true when processing stops at the first error.
bool ReadOnError(const Element& messages) {
  const std::string* onError = messages.Find("onError");
  if (!onError) Fail(Hresult::kParseError);
  if (*onError == "rollbackOnError") Fail(Hresult::kRollbackUnsupported);
  if (*onError != "stopOnError" && *onError != "continueOnError") Fail(Hresult::kParseError);
  return *onError == "stopOnError";
}

Element& MessagesOf(Element& root) {
  const bool envelope = root.name == "QBXML" && root.attributes.empty() && root.text.empty() &&
                        root.children.size() == 1 && root.children.front().name == "QBXMLMsgsRq";
  if (!envelope) Fail(Hresult::kParseError);
  Element& messages = root.children.front();
  const bool empty = messages.children.empty() && !messages.Find("oldMessageSetID");
  if (empty || !messages.text.empty()) Fail(Hresult::kParseError);
  return messages;
}

struct Step {
  const Message* message;
  Element* element;
};

// The context that all messages of a request share.
struct Frame {
  OpenCompany& company;
  Session& session;
  const Stamp& now;
  int version;  // times ten
  Macros& macros;
};

Step CheckMessage(Element& element, int version) {
  const Message* message = FindMessage(element.name);
  if (!message) Fail(Hresult::kParseError);
  if (!HasRightAttributes(*message, element, version)) Fail(Hresult::kParseError);
  CheckContent(element, *message->content, version);
  return {message, &element};
}

std::vector<Step> CheckMessages(Element& messages, int version) {
  std::vector<Step> steps;
  steps.reserve(messages.children.size());
  for (Element& element : messages.children) {
    Breathe();
    steps.push_back(CheckMessage(element, version));
  }
  return steps;
}

// Processes a message. Raises `size` to the least size of the whole response, if a fault asks for
// one.
Response Reply(const Step& step, const Frame& frame, std::size_t& size) {
  const Message& message = *step.message;
  if (const Fault* fault = frame.company.NextFault(message.name)) {
    size = std::max(size, fault->responseSize);
    if (fault->conduct.error != 0) Fail(fault->conduct.error);
    if (fault->status) return {*fault->status};
  }
  if (auto status = frame.macros.Fill(*step.element)) return {*std::move(status)};
  if (auto status = Normalize(*step.element, *message.content)) {
    return {*std::move(status)};
  }
  return message.reply({message, *step.element, frame.company, frame.session, frame.now,
                        frame.version, frame.macros});
}

void WriteResponse(const Step& step, const Response& response, XmlWriter& xml) {
  std::string name(step.message->name);
  name.replace(name.size() - 2, 2, "Rs");
  std::vector<Attribute> attributes;
  if (const std::string* id = step.element->Find("requestID")) {
    attributes.push_back({"requestID", *id});
  }
  attributes.push_back({"statusCode", std::to_string(response.status.code)});
  attributes.push_back({"statusSeverity", std::string(response.status.severity)});
  attributes.push_back({"statusMessage", response.status.message});
  std::ranges::copy(response.attributes, std::back_inserter(attributes));
  if (response.body.empty()) return xml.Empty(name, attributes);
  xml.Open(name, attributes);
  xml.RequireRoom(response.body.size());
  xml.Lines(response.body);
  xml.Close();
}

// Makes a response longer with a comment, so that it has the size when it is closed.
void Pad(XmlWriter& xml, std::size_t size) {
  constexpr std::size_t kRest = std::string_view("<!---->\n</QBXMLMsgsRs>\n</QBXML>\n").size();
  if (xml.Size() + kRest >= size) return;
  const std::string filling(size - xml.Size() - kRest, '.');
  xml.Lines(std::string("<!--").append(filling).append("-->\n"));
}

struct Processing {
  const std::vector<Step>& steps;
  bool stopOnError;
  std::size_t size = 0;  // of the response at least
};

// Writes all responses; those of `kept`, where that is wanted, with their status alone.
void WriteResponses(Processing& processing, const Frame& frame, XmlWriter& xml, XmlWriter* kept) {
  bool stopped = false;
  for (const Step& step : processing.steps) {
    Breathe();
    Response response = stopped ? Response{NotProcessed()} : Reply(step, frame, processing.size);
    stopped = stopped || (processing.stopOnError && response.status.IsError());
    WriteResponse(step, response, xml);
    response.body.clear();
    if (kept) WriteResponse(step, response, *kept);
  }
}

// The responses of a request that takes part in error recovery.
std::string RecoverableResponses(MessageSets& sets, Processing& processing, const Frame& frame) {
  if (!sets.Begin()) return sets.Kept();
  XmlWriter xml(XmlForm::kResponse);
  XmlWriter statuses(XmlForm::kResponse);
  WriteResponses(processing, frame, xml, sets.KeepsData() ? nullptr : &statuses);
  std::string responses = xml.Take();
  sets.Keep(sets.KeepsData() ? responses : statuses.Take());
  return responses;
}

}  // namespace

Text ProcessQbxml(TextView request, OpenCompany& company, Session& session, const Stamp& now) {
  XmlDocument document = Parse(request);
  const int version = CheckVersion(document, company.Data());
  Element& messages = MessagesOf(document.root);
  const bool stopOnError = ReadOnError(messages);
  MessageSets sets(messages, company, now);
  const std::vector<Step> steps = CheckMessages(messages, version);
  Macros macros;
  const Frame frame{company, session, now, version, macros};
  Processing processing{steps, stopOnError};
  const std::string recoverable =
      sets.IsNamed() ? RecoverableResponses(sets, processing, frame) : std::string();

  XmlWriter xml(XmlForm::kResponse);
  xml.Prolog();
  xml.Open("QBXML");
  xml.Open("QBXMLMsgsRs", sets.Attributes());
  if (sets.IsNamed()) {
    xml.RequireRoom(recoverable.size());
    xml.Lines(recoverable);
  } else {
    WriteResponses(processing, frame, xml, nullptr);
  }
  Pad(xml, processing.size);
  xml.Close();
  xml.Close();
  return FromAscii(xml.Take());
}

}  // namespace ostrel::simulator
