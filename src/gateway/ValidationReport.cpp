#include "gateway/ValidationReport.h"

#include <algorithm>
#include <exception>

#include "gateway/XmlLayout.h"
#include "platform/FileSystem.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

constexpr TextView kQbxmlInstructions[] = {
    u"<?qbxml version=\"3.0\"?>",
    u"<?qbxml version='3.0'?>",
    u"<?qbxml version=\"3.0\" ?>",
    u"<?qbxml version='3.0' ?>",
};

void RemoveIgnoringCase(Text& text, TextView removed) {
  const Text searched = LowerCase(text);
  const Text wanted = LowerCase(removed);
  Text rest;
  std::size_t done = 0;
  for (std::size_t at; (at = searched.find(wanted, done)) != Text::npos;
       done = at + wanted.size()) {
    rest.append(text, done, at - done);
  }
  if (done != 0) text = rest.append(text, done);
}

// Line `number` from 1 of a text with CR LF line breaks; empty when there is no such line.
TextView LineOf(TextView text, std::int32_t number) {
  for (std::int32_t line = 1;; ++line) {
    const std::size_t end = text.find(kCrLf);
    if (line == number) return text.substr(0, end);
    if (end == TextView::npos) return {};
    text.remove_prefix(end + kCrLf.size());
  }
}

// 100 characters that start 10 before the position (from 1), or at the start of the line.
TextView ExcerptAt(TextView line, std::int32_t position) {
  constexpr std::int32_t kBefore = 10;
  constexpr std::size_t kLength = 100;
  const auto start = static_cast<std::size_t>(std::max(position - kBefore, 1)) - 1;
  return start < line.size() ? line.substr(start, kLength) : TextView();
}

// The schema parser takes the path with every backslash doubled.
Text SchemaPath() {
  return ReplaceAll(platform::ProgramFolder() + u"\\qbxmlops30.xsd", u"\\", u"\\\\");
}

}  // namespace

bool ValidateRequest(TextView request, Text& report) {
  try {
    const Text text = PrepareForValidation(request);
    const platform::ParseFault fault = platform::ValidateXml(text, SchemaPath());
    report = fault.errorCode == 0 ? Text() : DescribeFault(fault, text);
    return fault.errorCode == 0;
  } catch (const std::exception&) {
    report = u"Reason: the request could not be validated.";
    return false;
  }
}

Text PrepareForValidation(TextView request) {
  Text text(request);
  for (const TextView instruction : kQbxmlInstructions) RemoveIgnoringCase(text, instruction);
  text = ReplaceAll(text, kAttributeMarkText, kCrLf);
  EnsureXmlProlog(text);
  return text;
}

Text DescribeFault(const platform::ParseFault& fault, TextView validatedText) {
  Text report = u"Reason: " + fault.reason;
  report.append(kCrLf).append(u"scrText: ").append(fault.srcText);
  report.append(kCrLf).append(u"LinePos: ").append(ToText(std::int64_t{fault.linepos}));
  report.append(kCrLf).append(u"Line: ").append(ToText(std::int64_t{fault.line}));
  report.append(kCrLf).append(u"FilePos: ").append(ToText(std::int64_t{fault.filepos}));
  report.append(kCrLf).append(ExcerptAt(LineOf(validatedText, fault.line), fault.linepos));
  return report;
}

}  // namespace ostrel
