#include "transports/RequestProcessing.h"

#include <new>

#include "util/Wire.h"

namespace ostrel {

HeldResponse ProcessWithinBudget(const RequestProcessing& process, Text& request,
                                 std::size_t bytesToSend) {
  HeldResponse response;
  response.fResult = process(request, response.sText);
  const std::size_t held = response.sText.capacity() * sizeof(char16_t);
  try {
    response.oShare.Resize(held + response.sText.size() * bytesToSend);
  } catch (const std::bad_alloc&) {
    response.fResult = ErrorNumber::kOutOfMemory;
    response.sText = Text(u"Out of memory: the response is too long");
  }
  return response;
}

}  // namespace ostrel
