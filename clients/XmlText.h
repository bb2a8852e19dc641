// The little XML that ostrel-send knows: to write a field as data of a request, and to find out
// what QuickBooks says of each message in a response.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/Text.h"

namespace ostrel {

/// The text as data of qbXML, in plain ASCII: XML's own letters as entities, everything above 126
/// as a numeric reference, and a letter of each command word of the gateway as its number, because
/// command words count wherever they stand. Nothing when the text holds a control character, which
/// XML cannot carry.
std::optional<Text> EscapedForXml(TextView text);

struct MessageStatus {
  std::string element;  // CustomerAddRs
  std::string code;     // statusCode
  std::string message;  // statusMessage, its entities as they stand
};

/// The messages of a response whose statusSeverity is Error, in their order. Takes time by the
/// response's size.
std::vector<MessageStatus> FailedMessages(std::string_view response);

}  // namespace ostrel
