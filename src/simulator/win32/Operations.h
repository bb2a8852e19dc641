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
  /// Carries out the call and returns its result; empty for an operation that returns nothing.
  Text (*run)(RequestProcessor& processor, Values values);
  bool returnsText;
};

/// Their numbers (DISPIDs) are their places here, from 1.
std::span<const Operation> Operations();

}  // namespace ostrel::simulator
