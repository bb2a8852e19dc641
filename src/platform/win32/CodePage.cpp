#include "platform/CodePage.h"

#include <windows.h>

namespace ostrel::platform {

std::optional<std::array<char16_t, 256>> SystemCodePage() {
  CPINFO information;
  if (!GetCPInfo(CP_ACP, &information) || information.MaxCharSize != 1) return {};

  std::array<char16_t, 256> characters{};
  for (std::size_t number = 0; number < characters.size(); ++number) {
    const char byte = static_cast<char>(number);
    wchar_t character = 0;
    const bool known =
        MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &byte, 1, &character, 1) == 1;
    characters[number] = static_cast<char16_t>(known ? character : number);
  }
  return characters;
}

}  // namespace ostrel::platform
