#include "gateway/HistoryFileName.h"

namespace ostrel {
namespace {

// Not control characters and what Windows reserves, blanks of any kind, direction marks and other
// signs that cannot be seen.
bool MayStand(char16_t c) {
  constexpr TextView kReserved = u"\\/:*?\"<>| \u00A0";
  const bool isInvisible =
      (c >= 0x2000 && c < 0x2070) || (c >= 0xD800 && c < 0xE000) || c >= 0xFE00;
  return !IsControl(c) && !isInvisible && kReserved.find(c) == TextView::npos;
}

}  // namespace

Text HistoryFileName(TextView generalDate, std::int32_t number) {
  Text name;
  for (const char16_t c : generalDate) {
    if (c == u'/') {
      name.push_back(u'0');
    } else if (MayStand(c)) {
      name.push_back(c);
    }
  }
  if (number > 1) name.append(u"-").append(ToText(std::int64_t{number}));
  return name + u".txt";
}

}  // namespace ostrel
