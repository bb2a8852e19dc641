#include "gateway/HistoryFiles.h"

#include "gateway/HistoryFileName.h"
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

}  // namespace

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
