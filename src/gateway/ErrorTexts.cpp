#include "gateway/ErrorTexts.h"

#include <iterator>

#include "platform/RequestProcessorTexts.h"

namespace ostrel {
namespace {

using platform::kRequestProcessorTexts;

struct ReducedText {
  std::int32_t number;
  TextView text;
};

constexpr ReducedText kReducedTexts[] = {
    {1030,
     u"Could not determine the version of the QuickBooks company data file, or the data file has "
     u"been modified and requires a newer version of QuickBooks."},
    {1046,
     u"If QuickBooks is not running, a call to the 'BeginSession' method must include the name of "
     u"the QuickBooks company data file."},
    {1050,
     u"This application does not have permission to access this QuickBooks company data file. The "
     u"QuickBooks administrator can grant access permission through the Integrated Application "
     u"preferences."},
};

std::optional<TextView> FindReducedText(std::int32_t number) {
  for (const ReducedText& row : kReducedTexts) {
    if (row.number == number) return row.text;
  }
  return std::nullopt;
}

}  // namespace

std::optional<TextView> FindErrorText(std::int32_t number) {
  if (number == kParseError) return kRequestProcessorTexts[0];
  if (number > kParseError) return FindReducedText(number);
  const std::uint32_t row =
      static_cast<std::uint32_t>(number) - platform::kFirstRequestProcessorError;
  if (row >= std::size(kRequestProcessorTexts)) return std::nullopt;
  return kRequestProcessorTexts[row];
}

}  // namespace ostrel
