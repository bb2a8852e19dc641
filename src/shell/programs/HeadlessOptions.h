// The command line of ostrel-server, which is the product's own and two switches more.
#pragma once

#include <vector>

#include "util/Text.h"

namespace ostrel {

struct HeadlessOptions {
  Text sCommandLine;  // the arguments as one text, for the main form
  Text sSettingsFile;
  bool bHelp = false;
  bool bVersion = false;
  Text sUnknown;  // what is no switch of the program; empty when all is well
};

/// Nothing is raised for what is no switch: the caller prints the help then. The settings file is
/// that of -ini, else osl.ini in the program's folder.
HeadlessOptions ReadHeadlessOptions(const std::vector<Text>& arguments);

}  // namespace ostrel
