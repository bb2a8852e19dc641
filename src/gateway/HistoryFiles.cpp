#include "gateway/HistoryFiles.h"

#include "platform/SystemError.h"

namespace ostrel {
namespace {

// More requests than that do not begin within a second.
constexpr std::int32_t kMostInASecond = 100'000;

bool Exists(const cFileIO& file) {
  Text message;
  std::int32_t number = 0;
  file.ReadErrorHandler(message, number);
  return number == platform::kFileExists;
}

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

bool HistoryFiles::Open(cFileIO& file, const GatewaySettings& settings, TextView generalDate) {
  const Text folder = settings.sHistPath + u"\\";
  file.RefuseLinks = true;
  if (settings.bHistoryEach) return OpenNew(file, folder, generalDate);
  file.FullFileName(folder + HistoryFileName(generalDate));
  return file.OpenFile({}, u"W");
}

bool HistoryFiles::OpenNew(cFileIO& file, const Text& folder, TextView generalDate) {
  if (sLastDate != generalDate) {
    sLastDate = generalDate;
    lLastNumber = 0;
  }
  file.CreateNew = true;
  while (lLastNumber < kMostInASecond) {
    file.FullFileName(folder + HistoryFileName(generalDate, ++lLastNumber));
    if (file.OpenFile({}, u"W")) return true;
    if (!Exists(file)) return false;
  }
  return false;
}

}  // namespace ostrel
