// Command lines of any text.
#include <algorithm>

#include "shell/settings/cCommandLine.h"
#include "tests/fuzz/FuzzTarget.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using fuzz::Require;

constexpr TextView kNames[] = {u"ini", u"debug", u"commmenu", u"d"};
constexpr std::ptrdiff_t kMostValues = 50;

void TryLine(std::string_view bytes) {
  const Text text = FromUtf8(bytes);
  cCommandLine line;
  line.AddSwitch(u"ini", true);
  line.AddSwitch(u"debug", false);
  line.AddSwitch(u"commmenu", true);
  line.CommandLine(text);

  Require(!line.HasSwitch(u"d") && line.SwitchValue(u"d").empty(), "only declared switches count");
  std::size_t told = line.MainArg().size();
  Text all = line.MainArg();
  for (const TextView name : kNames) {
    const Text value = line.SwitchValue(name);
    Require(line.HasSwitch(name) || value.empty(), "a value belongs to a switch that was given");
    Require(Contains(text, Text(1, kAttributeMark)) ||
                std::count(value.begin(), value.end(), kAttributeMark) < kMostValues,
            "a switch has fifty values at most");
    told += value.size();
    all += value;
  }
  Require(told <= text.size(), "nothing is told that was not given");

  line.CommandLine(text);
  Text again = line.MainArg();
  for (const TextView name : kNames) again += line.SwitchValue(name);
  Require(again == all, "what was parsed before is forgotten");
}

const fuzz::Registered kTarget("commandline", TryLine);

}  // namespace
}  // namespace ostrel
