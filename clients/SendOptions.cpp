#include "clients/SendOptions.h"

#include <charconv>
#include <functional>
#include <map>
#include <span>

namespace ostrel {

const TextView kSendUsage =
    uR"(ostrel-send [--host H] [--port P] [OPTION...] TEXT | @FILE | -
ostrel-send --folder PROCESS RESPONSE [OPTION...] TEXT | @FILE | -
ostrel-send --connect-only [--host H] [--port P] [--timeout S] [--folder P R]
ostrel-send --escape TEXT | @FILE | -

Sends one request to Ostrel Server, over TCP or through files, and prints the answer.

  TEXT             the request: a gateway command or qbXML
  @FILE            the request stands in this file
  -                the request comes on standard input
  --host H         the gateway's host (127.0.0.1)
  --port P         its port (4999)
  --folder P R     through files instead: the gateway's process folder and its response folder
  --timeout S      give up after this many seconds (300)
  --header NAME    put a line with the calling routine's name in front of the request
  --status         exit code 4 when QuickBooks refuses one of the messages, with its words
  --connect-only   is the gateway there? Connects, or looks for the folders; asks nothing
  --escape         print the text as data for a request, ASCII only, and send nothing
  --raw            send and print bytes as they are; without it line breaks are sent and printed as
                   each side needs them: attribute marks over TCP, CR LF in files, lines here

Examples:
  ostrel-send QUICKBOOKSINFO
  ostrel-send --host backoffice "QBFILENAME:C:\Books\My Company.QBW"
  ostrel-send @customers.xml
  ostrel-send --header CUSTOMER.LIST - < customers.xml
  ostrel-send --status @invoice.xml
  ostrel-send --escape "Smith & Sons"
  ostrel-send --folder C:\Ostrel\Process C:\Ostrel\Response @customers.xml

Exit code: 0 an answer, 1 the gateway answered with an error, 2 no connection or no such folder,
3 no answer in time, 4 with --status: QuickBooks refuses a message, 64 the command line cannot be understood.
)";

namespace {

int Number(TextView option, TextView text, int smallest, int largest) {
  const std::string digits = ToUtf8(text);
  int number = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = end.ec == std::errc() && end.ptr == digits.data() + digits.size();
  if (whole && number >= smallest && number <= largest) return number;
  throw UsageError(Text(option) + u" takes a number from " + ToText(std::int64_t{smallest}) +
                   u" to " + ToText(std::int64_t{largest}) + u", not \"" + Text(text) + u"\"");
}

using Values = std::span<const Text>;

struct Option {
  std::size_t values;  // how many follow it
  std::function<void(SendOptions&, Values)> Take;
};

const std::map<TextView, Option> kOptions = {
    {u"--host", {1, [](SendOptions& options, Values values) { options.host = values[0]; }}},
    {u"--port",
     {1, [](SendOptions& options,
            Values values) { options.port = Number(u"--port", values[0], 1, 65535); }}},
    {u"--folder",
     {2,
      [](SendOptions& options, Values values) {
        options.folders = ExchangeFolders{values[0], values[1]};
      }}},
    {u"--timeout",
     {1,
      [](SendOptions& options, Values values) {
        options.timeout = std::chrono::seconds(Number(u"--timeout", values[0], 1, 86400));
      }}},
    {u"--header", {1, [](SendOptions& options, Values values) { options.header = values[0]; }}},
    {u"--escape", {0, [](SendOptions& options, Values) { options.escape = true; }}},
    {u"--status", {0, [](SendOptions& options, Values) { options.status = true; }}},
    {u"--connect-only", {0, [](SendOptions& options, Values) { options.connectOnly = true; }}},
    {u"--raw", {0, [](SendOptions& options, Values) { options.raw = true; }}},
    {u"--help", {0, [](SendOptions& options, Values) { options.help = true; }}},
    {u"-h", {0, [](SendOptions& options, Values) { options.help = true; }}},
};

// Takes the option at the front of `rest`; false when there is none.
bool TakeOption(SendOptions& options, Values& rest) {
  const auto option = kOptions.find(rest.front());
  if (option == kOptions.end()) return false;
  const auto& [values, Take] = option->second;
  if (rest.size() <= values) {
    throw UsageError(rest.front() + (values == 1 ? u" needs a value" : u" needs two values"));
  }
  Take(options, rest.subspan(1, values));
  rest = rest.subspan(1 + values);
  return true;
}

}  // namespace

SendOptions ParseSendOptions(const std::vector<Text>& arguments) {
  SendOptions options;
  Values rest(arguments);
  while (!rest.empty() && TakeOption(options, rest)) {
  }
  if (options.help) return options;
  if (options.escape && options.connectOnly) {
    throw UsageError(u"either --escape or --connect-only");
  }
  if (rest.empty() && !options.connectOnly) throw UsageError(u"there is no request");
  if (!rest.empty() && rest.front().starts_with(u"--")) {
    throw UsageError(u"there is no option " + rest.front());
  }
  if (options.connectOnly && !rest.empty()) throw UsageError(u"--connect-only takes no request");
  if (rest.size() > 1) throw UsageError(u"one request only: put quotes around a text with blanks");
  if (options.folders && (options.host || options.port)) {
    throw UsageError(u"either --folder, or --host and --port");
  }
  if (!rest.empty()) options.request = rest.front();
  return options;
}

}  // namespace ostrel
