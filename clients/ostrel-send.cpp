// ostrel-send: the tool with which a user tries the gateway from the database's host. It sends one
// request as a database would and prints the answer.
#include <algorithm>
#include <exception>
#include <new>

#include "clients/GatewayExchange.h"
#include "clients/SendOptions.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "util/CodePage.h"
#include "util/Text.h"

namespace ostrel {
namespace {

enum ExitCode {
  kAnswer = 0,
  kErrorAnswer = 1,
  kNoConnection = 2,
  kNoAnswerInTime = 3,
  kUsage = 64
};

void Tell(TextView text) { platform::WriteStandardError(u"ostrel-send: " + Text(text) + u"\n"); }

std::string ReadRequestFile(TextView path) {
  platform::File file;
  int error = file.Open(path, platform::FileAccess::kRead, platform::FileCreation::kOpenExisting);
  std::string bytes(static_cast<std::size_t>(error == 0 ? file.Size() : 0), '\0');
  if (error == 0) bytes.resize(file.ReadAt(0, bytes, error).value_or(0));
  if (error == 0) return bytes;
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

// Line breaks, CR LF or LF, as attribute marks; one at the very end belongs to the file, not to the
// request.
std::string WithMarks(std::string_view bytes) {
  if (bytes.ends_with('\n')) bytes.remove_suffix(1);
  if (bytes.ends_with('\r')) bytes.remove_suffix(1);
  std::string marked;
  marked.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool lineBreak = bytes[i] == '\n' || bytes.substr(i).starts_with("\r\n");
    if (bytes[i] == '\r' && lineBreak) ++i;
    marked.push_back(lineBreak ? '\xFE' : bytes[i]);
  }
  return marked;
}

std::string RequestBytes(const SendOptions& options) {
  std::string bytes = GivenRequest(options);
  if (!options.raw) {
    bytes = WithMarks(IsFromCommandLine(options) ? std::move(bytes) : InCodePage(bytes));
  }
  if (!options.header.empty()) {
    bytes.insert(0, TextToBytes(options.header) + (options.raw ? "\r\n" : "\xFE"));
  }
  if (bytes.find('\x1F') != std::string::npos) {
    throw UsageError(u"the request holds character 31, which would end it there");
  }
  bytes.push_back('\x1F');
  return bytes;
}

Text Printable(std::string_view body) {
  Text text = BytesToText(body);
  std::replace(text.begin(), text.end(), kAttributeMark, u'\n');
  if (!text.ends_with(u'\n')) text.push_back(u'\n');
  return text;
}

ExitCode TellAnswer(const Answer& answer, bool raw) {
  if (answer.errorNumber) {
    Tell(u"the gateway answered with error " + ToText(std::int64_t{*answer.errorNumber}));
    if (!raw) platform::WriteStandardError(Printable(answer.body));
    return kErrorAnswer;
  }
  if (!raw) platform::WriteStandardOutput(Printable(answer.body));
  return kAnswer;
}

ExitCode Exchange(const SendOptions& options) {
  const std::string request = RequestBytes(options);
  GatewayExchange exchange(options.host, options.port, options.timeout);
  exchange.StillLoading = [] {
    Tell(u"QuickBooks is still opening the company file (ERROR: 99); waiting for the answer");
  };
  if (options.raw) exchange.FrameReceived = platform::WriteStandardOutputBytes;
  const ExchangeResult result = exchange.Run(request);
  if (result == ExchangeResult::kAnswered) return TellAnswer(Answer(exchange.frame), options.raw);
  Tell(options.host + u" port " + ToText(std::int64_t{options.port}) + u": " + exchange.reason);
  return result == ExchangeResult::kTimeout ? kNoAnswerInTime : kNoConnection;
}

int Run(const std::vector<Text>& arguments) {
  const SendOptions options = ParseSendOptions(arguments);
  if (!options.help) return Exchange(options);
  platform::WriteStandardOutput(kSendUsage);
  return kAnswer;
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
    return ostrel::kNoConnection;
  } catch (const std::exception& error) {
    Tell(ostrel::FromUtf8(error.what()));
    return ostrel::kNoConnection;
  }
}
