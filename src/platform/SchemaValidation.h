// Validation of an XML text against a schema file (MSXML on Windows, libxml2 on POSIX). External
// entities and network access are off; nothing but the schema file is read.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel::platform {

/// The first fault found. errorCode 0: the text is valid and the rest is empty.
struct ParseFault {
  std::int32_t errorCode = 0;
  Text reason;               // in the parser's own words, with its line breaks
  Text srcText;              // the source line at fault
  std::int32_t linepos = 0;  // from 1; 0 when the parser does not tell
  std::int32_t line = 0;     // from 1; 0 when the parser does not tell
  std::int32_t filepos = 0;  // characters before the fault, from 0
};

/// A schema that is missing or unusable is a fault as well, with the parser's own reason. Texts
/// that would cost more than they are worth (platform/XmlGuard.h) are refused as faults before a
/// parser sees them. Returns when the parser is done, without dispatching events.
ParseFault ValidateXml(TextView xml, TextView schemaPath);

}  // namespace ostrel::platform
