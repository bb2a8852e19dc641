#include "platform/CodePage.h"

namespace ostrel::platform {

std::optional<std::array<char16_t, 256>> SystemCodePage() { return {}; }

}  // namespace ostrel::platform
