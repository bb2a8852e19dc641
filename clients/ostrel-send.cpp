// ostrel-send: the tool with which a user tries the gateway from the database's host. It sends one
// request as a database would and prints the response.
#include <exception>
#include <new>

#include "clients/FolderExchange.h"
#include "clients/GatewayExchange.h"
#include "clients/SendOptions.h"
#include "clients/XmlText.h"
#include "platform/Console.h"
#include "platform/SystemError.h"
#include "util/CodePage.h"
#include "util/Cures.h"
#include "util/Text.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

enum ExitCode {
  kResponse = 0,
  kErrorResponse = 1,
  kNotReached = 2,
  kNoResponse = 3,
  kMessageRefused = 4,
  kUsage = 64
};

constexpr std::string_view kAttributeMarkAsBytes(&kAttributeMarkByte, 1);

void Tell(TextView text) { platform::WriteStandardError(u"ostrel-send: " + Text(text) + u"\n"); }

std::string ReadRequestFile(TextView path) {
  int error = 0;
  if (auto bytes = ReadFileBytes(path, error)) return std::move(*bytes);
  throw UsageError(u"cannot read " + Text(path) + u": " + platform::SystemErrorText(error));
}

// The request's bytes as they were given: a text of the command line in the code page.
std::string GivenRequest(const SendOptions& options) {
  if (options.request.starts_with(u'@')) {
    return ReadRequestFile(TextView(options.request).substr(1));
  }
  if (options.request != u"-") return TextToBytes(options.request);
  auto input = platform::ReadStandardInput();
  if (!input) throw UsageError(u"cannot read standard input");
  return std::move(*input);
}

// Files come in UTF-8 or in the database's 8-bit code page; what is not valid UTF-8 is the latter.
std::string InCodePage(const std::string& bytes) {
  const Text text = FromUtf8(bytes);
  return Contains(text, u"\uFFFD") ? bytes : TextToBytes(text);
}

bool IsFromCommandLine(const SendOptions& options) {
  return options.request != u"-" && !options.request.starts_with(u'@');
}

// Line breaks, CR LF or LF, become this; one at the very end belongs to the file, not to the
// request.
std::string WithLineBreaks(std::string_view bytes, std::string_view lineBreak) {
  if (bytes.ends_with('\n')) bytes.remove_suffix(1);
  if (bytes.ends_with('\r')) bytes.remove_suffix(1);
  std::string broken;
  broken.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes.substr(i).starts_with("\r\n")) ++i;
    if (bytes[i] == '\n') {
      broken.append(lineBreak);
    } else {
      broken.push_back(bytes[i]);
    }
  }
  return broken;
}

std::string RequestBytes(const SendOptions& options) {
  const std::string_view lineBreak =
      options.folders || options.raw ? "\r\n" : kAttributeMarkAsBytes;
  std::string bytes = GivenRequest(options);
  if (!options.raw) {
    if (!IsFromCommandLine(options)) bytes = InCodePage(bytes);
    bytes = WithLineBreaks(bytes, lineBreak);
  }
  if (options.header.empty()) return bytes;
  return TextToBytes(options.header).append(lineBreak).append(bytes);
}

std::string RequestFrame(const SendOptions& options) {
  std::string bytes = RequestBytes(options);
  if (bytes.find(kEndOfDataByte) != std::string::npos) {
    throw UsageError(u"the request holds character 31, which would end it there");
  }
  bytes.push_back(kEndOfDataByte);
  return bytes;
}

std::string RequestFile(const SendOptions& options) {
  std::string bytes = RequestBytes(options);
  if (!options.raw) bytes.append("\r\n");
  return bytes;
}

// Attribute marks and line breaks (in response files with one CR or more) as lines.
Text Printable(std::string_view body) {
  Text text;
  for (const char16_t character : BytesToText(body)) {
    const bool endsLine = character == u'\n' || character == kAttributeMark;
    while (character == u'\n' && text.ends_with(u'\r')) text.pop_back();
    text.push_back(endsLine ? u'\n' : character);
  }
  if (!text.ends_with(u'\n')) text.push_back(u'\n');
  return text;
}

// QuickBooks' words for each message that it refused.
ExitCode TellStatus(const Response& response) {
  const auto failed = FailedMessages(response.body);
  for (const MessageStatus& status : failed) {
    Tell(BytesToText(status.element + ": " + status.code + " " + status.message));
  }
  return failed.empty() ? kResponse : kMessageRefused;
}

void TellCure(TextView cure) {
  if (!cure.empty()) Tell(TextView(WhatToDo(cure)).substr(1));
}

ExitCode TellResponse(const SendOptions& options, const Response& response) {
  const bool raw = options.raw;
  if (response.errorNumber) {
    Tell(u"the gateway answered with error " + ToText(std::int64_t{*response.errorNumber}));
    if (!raw) platform::WriteStandardError(Printable(response.body));
    TellCure(CureText(*response.errorNumber, BytesToText(response.body)));
    return kErrorResponse;
  }
  if (!raw) platform::WriteStandardOutput(Printable(response.body));
  return options.status ? TellStatus(response) : kResponse;
}

ExitCode RunExchange(const SendOptions& options, TextView peer, Exchange& exchange,
                     std::string_view request) {
  exchange.StillLoading = [] {
    Tell(u"QuickBooks is still opening the company file (error 99); waiting for the answer");
  };
  if (options.raw) exchange.Received = platform::WriteStandardOutputBytes;
  const ExchangeResult result = options.connectOnly ? exchange.Reach() : exchange.Run(request);
  if (result == ExchangeResult::kResponded) {
    return options.connectOnly ? kResponse : TellResponse(options, exchange.response);
  }
  Tell(Text(peer) + u": " + exchange.reason);
  TellCure(exchange.cure);
  return result == ExchangeResult::kTimeout ? kNoResponse : kNotReached;
}

ExitCode SendOverTcp(const SendOptions& options) {
  const Text host = options.host.value_or(u"127.0.0.1");
  const int port = options.port.value_or(kDefaultPort);
  const std::string request = options.connectOnly ? std::string() : RequestFrame(options);
  GatewayExchange exchange(host, port, options.timeout);
  return RunExchange(options, host + u" port " + ToText(std::int64_t{port}), exchange, request);
}

ExitCode SendThroughFolders(const SendOptions& options) {
  const auto& [process, response] = *options.folders;
  const std::string request = options.connectOnly ? std::string() : RequestFile(options);
  FolderExchange exchange(process, response, UniqueRequestName(), options.timeout);
  return RunExchange(options, process, exchange, request);
}

// A text of the command line is Unicode. Bytes that are no UTF-8 are the database's: there 251 to
// 255 are its marks, which no field may hold.
Text GivenText(const SendOptions& options) {
  if (IsFromCommandLine(options)) return options.request;
  const std::string bytes = WithLineBreaks(GivenRequest(options), "\n");
  Text text = FromUtf8(bytes);
  if (!Contains(text, u"\uFFFD")) return text;
  for (const char byte : bytes) {
    const int mark = static_cast<unsigned char>(byte);
    if (mark >= 251) {
      throw UsageError(u"the text holds a mark, character " + ToText(std::int64_t{mark}));
    }
  }
  return BytesToText(bytes);
}

ExitCode PrintEscaped(const SendOptions& options) {
  const auto escaped = EscapedForXml(GivenText(options));
  if (!escaped) throw UsageError(u"the text holds a control character, which XML cannot carry");
  platform::WriteStandardOutput(*escaped + u"\n");
  return kResponse;
}

int Run(const std::vector<Text>& arguments) {
  const SendOptions options = ParseSendOptions(arguments);
  if (options.help) {
    platform::WriteStandardOutput(kSendUsage);
    return kResponse;
  }
  if (options.escape) return PrintEscaped(options);
  return options.folders ? SendThroughFolders(options) : SendOverTcp(options);
}

}  // namespace
}  // namespace ostrel

int main(int argc, char* argv[]) {
  using ostrel::Tell;
  try {
    return ostrel::Run(ostrel::platform::ProgramArguments(argc, argv));
  } catch (const ostrel::UsageError& error) {
    Tell(ostrel::FromUtf8(error.what()) + u"\n" + u"ostrel-send --help tells how to use it");
    return ostrel::kUsage;
  } catch (const std::bad_alloc&) {
    Tell(u"not enough memory");
    return ostrel::kNotReached;
  } catch (const std::exception& error) {
    Tell(ostrel::FromUtf8(error.what()));
    return ostrel::kNotReached;
  }
}
