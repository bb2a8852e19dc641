// The request processors that this system has, for one test to try them all.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/RequestProcessor.h"

namespace ostrel {

struct Implementation {
  std::string name;  // letters only
  /// Raises platform::RequestProcessorError.
  std::unique_ptr<platform::RequestProcessor> (*make)();
};

std::vector<Implementation> Implementations();

}  // namespace ostrel
