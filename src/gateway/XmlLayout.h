// Lays qbXML out one tag a line, indented by three blanks a level, for history and response files.
// Linear in the text, whatever the text: at most 16 Mi blanks and four times the text's length go
// into indentation, and lines beyond that have none.
#pragma once

#include "util/Text.h"

namespace ostrel {

class WholeFile;

/// Gives a request that came without one its XML prolog: puts the prolog and CR LF in front, unless
/// the text holds "<?xml" anywhere.
inline void EnsureXmlProlog(Text& request) {
  if (!Contains(request, u"<?xml")) request.insert(0, u"<?xml version='1.0' ?>\r\n");
}

/// The history formatter: the laid-out text replaces the argument.
void FormatXmlText(Text& text);

/// The response writer: lays the response out into the file at `path`, replacing it whole or not at
/// all. Events are dispatched between pieces. False when the file could not be written whole;
/// nothing is raised.
bool WriteResponseFile(TextView response, TextView path);
/// As above, into the open file; nothing is put in its place.
bool WriteResponseFile(TextView response, WholeFile& file);

}  // namespace ostrel
