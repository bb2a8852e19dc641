#include "shell/programs/HeadlessOptions.h"

#include <algorithm>

#include "platform/FileSystem.h"
#include "shell/frmMain.h"
#include "shell/settings/cCommandLine.h"

namespace ostrel {
namespace {

Text JoinQuoted(const std::vector<Text>& arguments) {
  Text joined;
  for (const Text& argument : arguments) {
    const bool quoted = argument.empty() || argument.find_first_of(u" \t") != Text::npos;
    if (!joined.empty()) joined.push_back(u' ');
    joined.append(quoted ? u"\"" + argument + u"\"" : argument);
  }
  return joined;
}

}  // namespace

HeadlessOptions ReadHeadlessOptions(const std::vector<Text>& arguments) {
  const auto given = [&](TextView argument) {
    return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
  };
  cCommandLine commandLine;
  DeclareSwitches(commandLine);
  commandLine.CommandLine(JoinQuoted(arguments));
  return {
      .sCommandLine = commandLine.CommandLine(),
      .sSettingsFile = SettingsFileName(commandLine, platform::ProgramFolder()),
      .bHelp = given(u"--help"),
      .bVersion = given(u"--version"),
      .sUnknown = commandLine.MainArg(),
  };
}

}  // namespace ostrel
