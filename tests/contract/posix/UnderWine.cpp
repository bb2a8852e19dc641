#include "tests/contract/UnderWine.h"

namespace ostrel::platform {

bool UnderWine() { return false; }

}  // namespace ostrel::platform
