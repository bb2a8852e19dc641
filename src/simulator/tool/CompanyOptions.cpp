#include "simulator/tool/CompanyOptions.h"

#include <charconv>
#include <map>
#include <optional>
#include <span>

namespace ostrel::simulator {

const TextView kCompanyUsage =
    uR"(ostrel-company [--customers N] [--vendors N] [--items N] [--invoices N] [--seed S] FILE
ostrel-company --check FILE
ostrel-company --print FILE [KIND]
ostrel-company --schema FILE
ostrel-company --messages

Makes and looks after company files for the QuickBooks stand-in.

  FILE           create this company file: a hardware store with a year behind it
  --customers N  with so many customers and jobs (24)
  --vendors N    so many vendors (8)
  --items N      so many things to sell, beside the usual services and charges (20)
  --invoices N   so many invoices, most of them paid (40)
  --seed S       another number makes another company of this size, the same one the same (1)
  --check FILE   see whether a company file and its journal are sound: names and IDs that are there
                 once, references that lead somewhere, balances that follow from the transactions
  --print FILE   print a company as tables, or one KIND: Customer, Invoice, Item
  --schema FILE  write the schema of the requests that the stand-in understands (qbxmlops30.xsd)
  --messages     list the messages of qbXML, and what the stand-in does with each: it is carried
                 out, answered empty (a query that finds nothing) or refused

Examples:
  ostrel-company sample.qbw
  ostrel-company --customers 100000 --invoices 0 large.qbw
  ostrel-company --check sample.qbw
  ostrel-company --print sample.qbw Invoice

Exit code: 0 done and sound, 1 --check has found something wrong, 2 a file cannot be read or
written or the company is open, 64 the command line cannot be understood.
)";

namespace {

constexpr std::size_t kMost = 1'000'000;
constexpr std::size_t kMostSeeds = UINT32_MAX;

std::size_t Number(TextView option, TextView text, std::size_t largest) {
  const std::string digits = ToUtf8(text);
  std::size_t number = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = end.ec == std::errc() && end.ptr == digits.data() + digits.size();
  if (whole && number <= largest) return number;
  throw UsageError(Text(option) + u" takes a number from 0 to " +
                   ToText(static_cast<std::int64_t>(largest)) + u", not \"" + Text(text) + u"\"");
}

using Values = std::span<const Text>;
using Numbered = std::size_t BusinessSize::*;

const std::map<TextView, Numbered> kNumbers = {
    {u"--customers", &BusinessSize::customers}, {u"--vendors", &BusinessSize::vendors},
    {u"--items", &BusinessSize::items},         {u"--invoices", &BusinessSize::invoices},
    {u"--seed", &BusinessSize::seed},
};
const std::map<TextView, CompanyTask> kTasks = {
    {u"--help", CompanyTask::kHelp},     {u"-h", CompanyTask::kHelp},
    {u"--check", CompanyTask::kCheck},   {u"--print", CompanyTask::kPrint},
    {u"--schema", CompanyTask::kSchema}, {u"--messages", CompanyTask::kMessages}};

// Takes the option at the front of `rest`; false when there is none.
bool TakeOption(CompanyOptions& options, Values& rest, bool& sized) {
  const Text& name = rest.front();
  if (const auto task = kTasks.find(name); task != kTasks.end()) {
    if (options.task != CompanyTask::kCreate && options.task != task->second) {
      throw UsageError(u"one thing at a time: --check, --print, --schema or --messages");
    }
    options.task = task->second;
    rest = rest.subspan(1);
    return true;
  }
  const auto number = kNumbers.find(name);
  if (number == kNumbers.end()) return false;
  if (rest.size() < 2) throw UsageError(name + u" needs a value");
  options.size.*number->second = Number(name, rest[1], name == u"--seed" ? kMostSeeds : kMost);
  rest = rest.subspan(2);
  sized = true;
  return true;
}

// Everything but the list of messages is about a file.
void RequireNoFile(const Values& rest) {
  if (!rest.empty()) throw UsageError(u"--messages takes no file: " + rest.front());
}

}  // namespace

CompanyOptions ParseCompanyOptions(const std::vector<Text>& arguments) {
  CompanyOptions options;
  Values rest(arguments);
  bool sized = false;
  while (!rest.empty() && TakeOption(options, rest, sized)) {
  }
  if (options.task == CompanyTask::kHelp) return options;
  if (!rest.empty() && rest.front().starts_with(u"--")) {
    throw UsageError(u"there is no option " + rest.front());
  }
  if (sized && options.task != CompanyTask::kCreate) {
    throw UsageError(u"numbers are for a company that is created");
  }
  if (options.task == CompanyTask::kMessages) {
    RequireNoFile(rest);
    return options;
  }
  if (rest.empty()) throw UsageError(u"there is no company file");
  const std::size_t most = options.task == CompanyTask::kPrint ? 2 : 1;
  if (rest.size() > most) throw UsageError(u"too much behind the file: " + rest[most]);
  options.file = rest[0];
  if (rest.size() == 2) options.kind = rest[1];
  if (options.size.invoices > 0 && (options.size.customers == 0 || options.size.items == 0)) {
    throw UsageError(u"invoices need customers and items");
  }
  return options;
}

}  // namespace ostrel::simulator
