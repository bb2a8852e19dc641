// The XML prolog that a request gets when it came without one.
#pragma once

#include "util/Text.h"

namespace ostrel {

/// Puts the prolog and CR LF in front, unless the text holds "<?xml" anywhere.
inline void EnsureXmlProlog(Text& request) {
  if (!Contains(request, u"<?xml")) request.insert(0, u"<?xml version='1.0' ?>\r\n");
}

}  // namespace ostrel
