// Lays qbXML out one tag a line, indented, for history and response files. Linear in the text.
#pragma once

#include "util/Text.h"

namespace ostrel {

/// The history formatter: the laid-out text replaces the argument.
void FormatXmlText(Text& text);

/// The response writer: lays the response out into the file at `path`, replacing it. False when the
/// file could not be written whole; nothing is raised.
bool WriteResponseFile(TextView response, TextView path);

}  // namespace ostrel
