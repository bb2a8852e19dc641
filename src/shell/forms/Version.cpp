#include "shell/forms/Version.h"

namespace ostrel {

Text ProgramVersion() {
  return ToText(std::int64_t{OSTREL_VERSION_MAJOR}) + u"." +
         ToText(std::int64_t{OSTREL_VERSION_MINOR}) + u"." +
         ToText(std::int64_t{OSTREL_VERSION_REVISION});
}

}  // namespace ostrel
