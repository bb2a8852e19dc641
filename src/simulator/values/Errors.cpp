#include "simulator/values/Errors.h"

namespace ostrel::simulator {

void Fail(std::uint32_t hresult) {
  const auto number = static_cast<std::int32_t>(hresult);
  throw RequestProcessorError(number, Text(SentenceFor(number)));
}

void FailAsGivenUp() { throw RequestProcessorError(Raw(Hresult::kGivenUp), Text(kGivenUpText)); }

}  // namespace ostrel::simulator
