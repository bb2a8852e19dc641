// The options of ostrel-send, as its command line gives them.
#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "util/Text.h"

namespace ostrel {

/// The command line cannot be understood; what() says why, in UTF-8.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(TextView reason) : std::runtime_error(ToUtf8(reason)) {}
};

/// The gateway's folders for requests and for responses.
struct ExchangeFolders {
  Text process, response;
};

struct SendOptions {
  std::optional<ExchangeFolders> folders;  // through files; otherwise over TCP
  std::optional<Text> host;                // the gateway's machine; nothing: this one
  std::optional<int> port;                 // nothing: kDefaultPort
  std::chrono::seconds timeout{300};       // for the whole exchange
  Text header;                             // the line that names the calling routine; empty: none
  bool raw = false;                        // bytes go and come as they are
  bool escape = false;                     // prints the text as data of qbXML, sends nothing
  bool status = false;                     // an error of a message is an exit code of its own
  bool connectOnly = false;                // sends nothing
  bool help = false;
  Text request;  // the text itself, "@FILE" or "-"; empty with connectOnly
};

/// Raises UsageError.
SendOptions ParseSendOptions(const std::vector<Text>& arguments);

extern const TextView kSendUsage;

}  // namespace ostrel
