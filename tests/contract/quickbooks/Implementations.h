// The request processors that this system has, for one test to try them all.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "quickbooks/RequestProcessor.h"

namespace ostrel {

struct Implementation {
  std::string name;  // letters only
  /// Raises RequestProcessorError.
  std::unique_ptr<RequestProcessor> (*make)();
};

std::vector<Implementation> Implementations();

}  // namespace ostrel
