#include "shell/Version.h"

#ifndef OSTREL_VERSION_MAJOR
#define OSTREL_VERSION_MAJOR 1
#define OSTREL_VERSION_MINOR 0
#define OSTREL_VERSION_REVISION 0
#endif

namespace ostrel {

Text ProgramVersion() {
  return ToText(std::int64_t{OSTREL_VERSION_MAJOR}) + u"." +
         ToText(std::int64_t{OSTREL_VERSION_MINOR}) + u"." +
         ToText(std::int64_t{OSTREL_VERSION_REVISION});
}

}  // namespace ostrel
