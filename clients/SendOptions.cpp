#include "clients/SendOptions.h"

#include <charconv>
#include <functional>
#include <map>
#include <span>

namespace ostrel {

const TextView kSendUsage =
    uR"(ostrel-send [--host H] [--port P] [--timeout SECONDS] [--header NAME] [--raw] TEXT | @FILE | -

Sends one request to Ostrel Server and prints the answer.

  TEXT             the request: a gateway command or qbXML
  @FILE            the request stands in this file
  -                the request comes on standard input
  --host H         the gateway's host (127.0.0.1)
  --port P         its port (4999)
  --timeout S      give up after this many seconds (300)
  --header NAME    put a line with the calling routine's name in front of the request
  --raw            send and print bytes as they are; without it line breaks travel as attribute
                   marks, and the answer's attribute marks are printed as line breaks

Examples:
  ostrel-send QUICKBOOKSINFO
  ostrel-send --host backoffice "QBFILENAME:C:\Books\My Company.QBW"
  ostrel-send @customers.xml
  ostrel-send --header CUSTOMER.LIST - < customers.xml

Exit code: 0 an answer, 1 the gateway answered with an error, 2 no connection, 3 no answer in time,
64 the command line cannot be understood.
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

using Setter = std::function<void(SendOptions&, TextView)>;

const std::map<TextView, Setter> kWithValue = {
    {u"--host", [](SendOptions& options, TextView value) { options.host = value; }},
    {u"--port", [](SendOptions& options,
                   TextView value) { options.port = Number(u"--port", value, 1, 65535); }},
    {u"--timeout",
     [](SendOptions& options, TextView value) {
       options.timeout = std::chrono::seconds(Number(u"--timeout", value, 1, 86400));
     }},
    {u"--header", [](SendOptions& options, TextView value) { options.header = value; }},
};

const std::map<TextView, bool SendOptions::*> kFlags = {
    {u"--raw", &SendOptions::raw}, {u"--help", &SendOptions::help}, {u"-h", &SendOptions::help}};

// Takes the option at the front of `rest`; false when there is none.
bool TakeOption(SendOptions& options, std::span<const Text>& rest) {
  const Text& name = rest.front();
  if (const auto flag = kFlags.find(name); flag != kFlags.end()) {
    options.*flag->second = true;
    rest = rest.subspan(1);
    return true;
  }
  const auto setter = kWithValue.find(name);
  if (setter == kWithValue.end()) return false;
  if (rest.size() < 2) throw UsageError(name + u" needs a value");
  setter->second(options, rest[1]);
  rest = rest.subspan(2);
  return true;
}

}  // namespace

SendOptions ParseSendOptions(const std::vector<Text>& arguments) {
  SendOptions options;
  std::span<const Text> rest(arguments);
  while (!rest.empty() && TakeOption(options, rest)) {
  }
  if (options.help) return options;
  if (rest.empty()) throw UsageError(u"there is no request");
  if (rest.front().starts_with(u"--")) {
    throw UsageError(u"there is no option " + rest.front());
  }
  if (rest.size() > 1) {
    throw UsageError(u"one request only: put quotes around a text with blanks");
  }
  options.request = rest.front();
  return options;
}

}  // namespace ostrel
