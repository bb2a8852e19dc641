// The program's command line: switches, written with "-" or "/" and matched ignoring case, and what
// is left. Declare the switches first, then set CommandLine.
#pragma once

#include <vector>

#include "util/Text.h"

namespace ostrel {

class cCommandLine {
 public:
  /// hasArguments: the next word, or a text in double quotes that may contain blanks, is its value.
  void AddSwitch(TextView name, bool hasArguments);

  /// Parses the whole text, without the program's own name; what was parsed before is forgotten.
  void CommandLine(TextView text);
  const Text& CommandLine() const { return sCommandLine; }

  bool HasSwitch(TextView name) const;
  /// The values in the order given, at most 50, joined by the attribute mark; empty when the switch
  /// was not given or had no value.
  Text SwitchValue(TextView name) const;
  /// The words that belong to no declared switch, joined by blanks.
  const Text& MainArg() const { return sMainArg; }

 private:
  struct Switch {
    Text sName;  // lower case
    bool bHasArguments;
    bool bGiven = false;
    std::vector<Text> Values;
  };

  Switch* Find(TextView name);
  const Switch* Find(TextView name) const;
  void AddMainArg(TextView word);

  std::vector<Switch> Switches;
  Text sCommandLine;
  Text sMainArg;
};

}  // namespace ostrel
