// QuickBooks' own request processor, as QuickBooks has installed it on this machine. Only on
// Windows.
#pragma once

#include <memory>

#include "quickbooks/RequestProcessor.h"

namespace ostrel {

/// When QuickBooks is found gone (IsServerGone) the object has no session any more;
/// OpenConnection, which needs none, first tries to reach QuickBooks anew. Destroying the object
/// takes 2 seconds at most, whatever QuickBooks does.
std::unique_ptr<RequestProcessor> MakeInstalledRequestProcessor();

}  // namespace ostrel
