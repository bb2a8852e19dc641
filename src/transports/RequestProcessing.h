// The way from a transport to the request handler, and the response that comes back.
#pragma once

#include <cstddef>
#include <functional>
#include <new>

#include "util/Text.h"
#include "util/TextBudget.h"
#include "util/Wire.h"

namespace ostrel {

/// The gateway's ProcessRequest: the result is above 0 for an error.
using RequestProcessing = std::function<float(Text& request, Text& response)>;

/// Characters; no transport takes a longer request.
inline constexpr std::size_t kLongestRequest = std::size_t{256} * 1024 * 1024;

/// A response with its share of the budget of all texts.
struct HeldResponse {
  float fResult = 0;  // above 0 for an error
  Text sText;
  TextBudget::Share oShare;
};

/// Has the request processed. A response that would pass the budget is given up for error 7.
/// bytesToSend: what each of its characters will take on its way, beside the text.
inline HeldResponse ProcessWithinBudget(const RequestProcessing& process, Text& request,
                                        std::size_t bytesToSend = 0) {
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
