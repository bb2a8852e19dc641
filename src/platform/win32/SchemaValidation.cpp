// Validation by MSXML, the newest version that is installed.
#include "platform/SchemaValidation.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "platform/XmlGuard.h"
#include "platform/win32/AutomationObject.h"

namespace ostrel::platform {
namespace {

struct Version {
  const wchar_t* document;
  const wchar_t* schemas;
};

constexpr Version kVersions[] = {
    {L"Msxml2.DOMDocument.6.0", L"Msxml2.XMLSchemaCache.6.0"},
    {L"Msxml2.DOMDocument.4.0", L"Msxml2.XMLSchemaCache.4.0"},
    {L"Msxml2.DOMDocument.3.0", L"Msxml2.XMLSchemaCache.3.0"},
};

constexpr std::int32_t kMaxDepth = 256;
constexpr auto kXmlRefused = static_cast<HRESULT>(0xC00CE584);  // MSXML's for a type it prohibits

Text Hexadecimal(HRESULT number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(number));
  return FromAscii(text);
}

ParseFault PlainFault(HRESULT number, Text reason) {
  ParseFault fault;
  fault.errorCode = number;
  fault.reason = reason.empty() ? u"Error " + Hexadecimal(number) : std::move(reason);
  return fault;
}

// A parse error object's fault; code 0 when there is none.
ParseFault ReadFault(AutomationObject error) {
  const std::int32_t code = error.Read(L"errorCode").value.AsNumber();
  if (code == 0) return {};
  ParseFault fault = PlainFault(code, error.Read(L"reason").value.AsText());
  fault.srcText = error.Read(L"srcText").value.AsText();
  fault.linepos = error.Read(L"linepos").value.AsNumber();
  fault.line = error.Read(L"line").value.AsNumber();
  fault.filepos = error.Read(L"filepos").value.AsNumber();
  return fault;
}

// Properties that a version does not know are left alone: it has no such feature to switch off.
void CloseToTheOutside(AutomationObject& document) {
  document.Write(L"resolveExternals", Variant(false));
  const Variant prohibitDtd(u"ProhibitDTD");
  const Variant yes(true);
  document.Call(L"setProperty", {&prohibitDtd, &yes});
  const Variant inlineSchema(u"UseInlineSchema");
  const Variant no(false);
  document.Call(L"setProperty", {&inlineSchema, &no});
  const Variant maxDepth(u"MaxElementDepth");
  const Variant depth(kMaxDepth);
  document.Call(L"setProperty", {&maxDepth, &depth});
}

// Wine's MSXML does not validate while it loads; asking again costs little, since only a request
// that QuickBooks has refused comes here.
ParseFault Validate(AutomationObject& document, TextView xml) {
  const Variant text(xml);
  const Outcome loaded = document.Call(L"loadXML", {&text});
  if (loaded.Failed()) return PlainFault(loaded.number, loaded.description);
  ParseFault fault = ReadFault(AutomationObject(document.Read(L"parseError").value.AsObject()));
  if (fault.errorCode != 0) return fault;
  const Outcome validated = document.Call(L"validate");
  if (validated.Failed()) return PlainFault(validated.number, validated.description);
  return ReadFault(AutomationObject(validated.value.AsObject()));
}

// The validator takes no document type at all. One without declarations says nothing that counts
// here: blanks take its place, so that positions stay what they are.
Text WithoutType(TextView xml, const XmlGuard& guard) {
  Text without(xml);
  const auto begin = without.begin() + static_cast<std::ptrdiff_t>(guard.TypeBegin());
  const auto end = without.begin() + static_cast<std::ptrdiff_t>(guard.TypeEnd());
  std::replace_if(
      begin, end, [](char16_t c) { return c != u'\r' && c != u'\n'; }, u' ');
  return without;
}

}  // namespace

ParseFault ValidateXml(TextView xml, TextView schemaPath) {
  XmlGuard guard;
  const XmlHazard hazard = guard.Look(xml);
  if (hazard != XmlHazard::kNone) return PlainFault(kXmlRefused, Text(HazardText(hazard)));
  Text without;
  if (guard.TypeEnd() != 0) {
    without = WithoutType(xml, guard);
    xml = without;
  }
  const Apartment apartment;
  for (const Version& version : kVersions) {
    AutomationObject document = AutomationObject::Create(version.document);
    AutomationObject schemas = AutomationObject::Create(version.schemas);
    if (!document || !schemas) continue;
    const Variant noNamespace(u"");
    const Variant path(schemaPath);
    const Outcome added = schemas.Call(L"add", {&noNamespace, &path});
    if (added.Failed()) return PlainFault(added.number, added.description);
    CloseToTheOutside(document);
    document.Write(L"async", Variant(false));
    document.Write(L"validateOnParse", Variant(true));
    const Outcome attached = document.Refer(L"schemas", schemas);
    if (attached.Failed()) return PlainFault(attached.number, attached.description);
    return Validate(document, xml);
  }
  return PlainFault(REGDB_E_CLASSNOTREG, u"MSXML is not installed.");
}

}  // namespace ostrel::platform
