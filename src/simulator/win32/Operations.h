// The request processor's operations as automation calls them: by name, with VARIANTs.
#pragma once

#include <ole2.h>

#include <span>

#include "quickbooks/RequestProcessor.h"

namespace ostrel::simulator {

/// The arguments of one call, from the first to the last, already of the types that it takes.
using Values = std::span<const VARIANT* const>;

struct Operation {
  TextView name;
  std::span<const VARTYPE> arguments;  // VT_BSTR or VT_I4
  /// Returns what the call answers; empty for an operation without an answer.
  Text (*run)(RequestProcessor& processor, Values values);
  bool answers;
};

/// Their numbers (DISPIDs) are their places here, from 1.
std::span<const Operation> Operations();

}  // namespace ostrel::simulator
