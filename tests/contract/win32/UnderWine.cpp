#include "tests/contract/UnderWine.h"

#include <windows.h>

namespace ostrel::platform {

bool UnderWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace ostrel::platform
