#include "simulator/Errors.h"

#include <iterator>

#include "platform/RequestProcessorTexts.h"

namespace ostrel::simulator {

TextView Sentence(std::uint32_t hresult) {
  const std::uint32_t row = hresult - platform::kFirstRequestProcessorError;
  using platform::kRequestProcessorTexts;
  return row < std::size(kRequestProcessorTexts) ? kRequestProcessorTexts[row] : TextView();
}

void Fail(std::uint32_t hresult) {
  throw platform::RequestProcessorError(static_cast<std::int32_t>(hresult),
                                        Text(Sentence(hresult)));
}

void FailAsGivenUp() {
  throw platform::RequestProcessorError(platform::kGivenUp, Text(platform::kGivenUpText));
}

}  // namespace ostrel::simulator
