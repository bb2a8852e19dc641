// Validation by libxml2. The text streams through parser and validator together: no tree is built,
// and a schema fault is known where the parser stands.
#include "platform/SchemaValidation.h"

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/Files.h"
#include "platform/SystemError.h"
#include "platform/XmlGuard.h"

namespace ostrel::platform {
namespace {

constexpr std::size_t kPieceSize = 64 * 1024;
constexpr std::size_t kMaxSourceText = 512;  // characters of a long line that are shown
constexpr std::int64_t kMaxSchemaSize = 64 * 1024 * 1024;
constexpr int kInvalidCharacter = XML_ERR_INVALID_CHAR;

template <class Object, void (*kFree)(Object*)>
struct Freed {
  void operator()(Object* object) const { kFree(object); }
};
template <class Object, void (*kFree)(Object*)>
using Owner = std::unique_ptr<Object, Freed<Object, kFree>>;

using SchemaParser = Owner<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt>;
using Schema = Owner<xmlSchema, xmlSchemaFree>;
using Validator = Owner<xmlSchemaValidCtxt, xmlSchemaFreeValidCtxt>;

void FreeParser(xmlParserCtxt* parser) {
  if (parser->myDoc) xmlFreeDoc(parser->myDoc);
  xmlFreeParserCtxt(parser);
}
using Parser = Owner<xmlParserCtxt, FreeParser>;

// The options let the parser read only the text that it is given: no DTD, no entity, no included
// schema, no network.
xmlParserInputPtr LoadNothing(const char*, const char*, xmlParserCtxtPtr) { return nullptr; }

void InitializeLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    xmlInitParser();
    xmlSetExternalEntityLoader(LoadNothing);
  });
}

// Keeps the first error of the library while it lives, and all of them off standard error.
class FirstError {
 public:
  FirstError() { xmlSetStructuredErrorFunc(this, Note); }
  ~FirstError() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
  FirstError(const FirstError&) = delete;
  FirstError& operator=(const FirstError&) = delete;

  /// The parser whose position an error without one of its own has.
  void SetParser(xmlParserCtxtPtr parser) { oParser = parser; }
  bool Happened() const { return iCode != 0; }

  int iCode = 0;
  std::string sMessage;
  int iLine = 0;
  int iColumn = 0;

 private:
  // Called from C code, through which nothing may be thrown.
  static void Note(void* context, xmlErrorPtr error) noexcept {
    auto& first = *static_cast<FirstError*>(context);
    if (first.Happened() || error->level < XML_ERR_ERROR) return;
    first.iCode = error->code == 0 ? XML_ERR_INTERNAL_ERROR : error->code;
    first.TakeMessage(error->message);
    first.TakePosition(*error);
    if (first.oParser) xmlStopParser(first.oParser);
  }

  void TakeMessage(const char* message) noexcept {
    try {
      sMessage = message ? message : "";
      while (!sMessage.empty() && (sMessage.back() == '\n' || sMessage.back() == ' ')) {
        sMessage.pop_back();
      }
    } catch (const std::bad_alloc&) {
      sMessage.clear();
    }
  }

  void TakePosition(const xmlError& error) {
    if (!oParser || !oParser->input) return;
    const bool own = error.domain == XML_FROM_PARSER || error.domain == XML_FROM_NAMESPACE;
    iLine = own && error.line > 0 ? error.line : oParser->input->line;
    iColumn = own && error.int2 > 0 ? error.int2 : oParser->input->col;
  }

  xmlParserCtxtPtr oParser = nullptr;
};

ParseFault PlainFault(int code, Text reason) {
  ParseFault fault;
  fault.errorCode = code;
  fault.reason = std::move(reason);
  return fault;
}

// The fault with the place in the text at which it lies.
ParseFault PlacedFault(const FirstError& error, TextView xml) {
  ParseFault fault = PlainFault(error.iCode, FromUtf8(error.sMessage));
  fault.line = error.iLine;
  fault.linepos = error.iColumn;
  if (fault.line < 1) return fault;

  std::size_t start = 0;
  for (std::int32_t line = 1; line < fault.line && start < xml.size(); ++line) {
    start = std::min(xml.find(u'\n', start), xml.size() - 1) + 1;
  }
  TextView source = xml.substr(start, xml.find(u'\n', start) - start);
  if (source.ends_with(u'\r')) source.remove_suffix(1);
  const auto length = static_cast<std::int32_t>(source.size());
  fault.linepos = std::clamp(fault.linepos, 1, length + 1);
  fault.filepos = static_cast<std::int32_t>(start) + fault.linepos - 1;
  const auto position = static_cast<std::size_t>(fault.linepos);
  const std::size_t shown = position > kMaxSourceText ? position - kMaxSourceText / 2 : 0;
  fault.srcText = source.substr(shown, kMaxSourceText);
  return fault;
}

int ReadWhole(TextView path, std::string& bytes) {
  File file;
  if (const int error = file.Open(path, FileAccess::kRead, FileCreation::kOpenExisting)) {
    return error;
  }
  return ReadFileContents(file, kMaxSchemaSize, bytes);
}

// Null, with the fault, when the schema is missing or unusable.
Schema LoadSchema(TextView path, ParseFault& fault) {
  std::string bytes;
  if (const int error = ReadWhole(path, bytes)) {
    fault = PlainFault(XML_IO_LOAD_ERROR,
                       u"failed to load \"" + Text(path) + u"\": " + SystemErrorText(error));
    return nullptr;
  }
  FirstError error;
  const SchemaParser parser(
      xmlSchemaNewMemParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
  Schema schema(parser ? xmlSchemaParse(parser.get()) : nullptr);
  if (schema && !error.Happened()) return schema;
  const Text reason = error.Happened() ? FromUtf8(error.sMessage) : Text(u"unusable schema");
  fault = PlainFault(error.Happened() ? error.iCode : XML_SCHEMAP_INTERNAL, reason);
  return nullptr;
}

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c < 0xDC00; }

// Up to a piece from the front of the text, never half a surrogate pair.
TextView TakePiece(TextView& xml) {
  std::size_t length = std::min(xml.size(), kPieceSize);
  if (length < xml.size() && IsHighSurrogate(xml[length - 1])) --length;
  const TextView piece = xml.substr(0, length);
  xml.remove_prefix(length);
  return piece;
}

// The parser takes what follows a character 0 for the end of the text.
std::optional<ParseFault> FindUnreadable(TextView xml) {
  if (xml.find(u'\0') != TextView::npos) {
    return PlainFault(kInvalidCharacter, u"Char 0x0 out of allowed range");
  }
  const TextView hazard = HazardText(XmlGuard().Look(xml));
  if (hazard.empty()) return std::nullopt;
  return PlainFault(XML_ERR_INTERNAL_ERROR, Text(hazard));
}

// Parser and validator plugged together for one text. The validator's handlers know no entity
// declarations, so no entity is ever expanded.
class ValidatingParser {
 public:
  ValidatingParser(xmlSchema& schema, FirstError& error)
      : oError(error), oValidator(xmlSchemaNewValidCtxt(&schema)) {
    if (!oValidator) return;
    oPlug = xmlSchemaSAXPlug(oValidator.get(), &oHandlers, &oUserData);
    if (!oPlug) return;
    oParser.reset(xmlCreatePushParserCtxt(oHandlers, oUserData, nullptr, 0, nullptr));
    if (!oParser) return;
    // The text is decoded already: an encoding that its prolog declares is ignored.
    xmlCtxtUseOptions(oParser.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    oError.SetParser(oParser.get());
  }
  ~ValidatingParser() {
    oError.SetParser(nullptr);
    if (oPlug) xmlSchemaSAXUnplug(oPlug);
  }
  ValidatingParser(const ValidatingParser&) = delete;
  ValidatingParser& operator=(const ValidatingParser&) = delete;

  explicit operator bool() const { return oParser != nullptr; }

  /// True when the text is well-formed and valid; else the error holds the first fault.
  bool Accepts(TextView xml) {
    while (!xml.empty() && !oError.Happened()) {
      const std::string piece = ToUtf8(TakePiece(xml));
      xmlParseChunk(oParser.get(), piece.data(), static_cast<int>(piece.size()), 0);
    }
    if (!oError.Happened()) xmlParseChunk(oParser.get(), "", 0, 1);
    return !oError.Happened() && oParser->wellFormed && xmlSchemaIsValid(oValidator.get());
  }

 private:
  FirstError& oError;
  Validator oValidator;
  xmlSAXHandlerPtr oHandlers = nullptr;
  void* oUserData = nullptr;
  xmlSchemaSAXPlugPtr oPlug = nullptr;
  Parser oParser;
};

}  // namespace

ParseFault ValidateXml(TextView xml, TextView schemaPath) {
  InitializeLibrary();
  ParseFault fault;
  const Schema schema = LoadSchema(schemaPath, fault);
  if (!schema) return fault;
  if (auto unreadable = FindUnreadable(xml)) return *std::move(unreadable);

  FirstError error;
  ValidatingParser parser(*schema, error);
  if (!parser) return PlainFault(XML_ERR_NO_MEMORY, u"not enough memory");
  if (parser.Accepts(xml)) return {};
  if (!error.Happened()) return PlainFault(XML_ERR_DOCUMENT_END, u"The document is not valid");
  return PlacedFault(error, xml);
}

}  // namespace ostrel::platform
