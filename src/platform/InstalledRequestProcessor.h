// QuickBooks' own request processor, as QuickBooks has installed it on this machine. Only on
// Windows.
#pragma once

#include <memory>

#include "platform/RequestProcessor.h"

namespace ostrel::platform {

/// Raises RequestProcessorError when QuickBooks has not installed it or it cannot be started.
/// Events are dispatched meanwhile: QuickBooks may have to start.
///
/// When QuickBooks is found gone (MeansServerGone) the object has no session any more;
/// OpenConnection, which needs none, first tries to reach QuickBooks anew. Destroying the object
/// takes 2 seconds at most, whatever QuickBooks does.
std::unique_ptr<RequestProcessor> MakeInstalledRequestProcessor();

}  // namespace ostrel::platform
