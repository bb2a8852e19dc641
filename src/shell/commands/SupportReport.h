// The report that people send to the maker's support when something does not work.
#pragma once

#include "gateway/HostQuery.h"
#include "shell/settings/AppSettings.h"
#include "util/Text.h"

namespace ostrel {

/// The sentence that asks for a report and says where to send it, without a line end.
Text SupportRequest();

/// The program and how it is set up. Every line ends with CR LF. QuickBooks' product is left out
/// while it is not known.
Text SupportReport(const AppSettings& settings, const HostQuery& hostQuery);

/// "QuickBooks Premier Edition 2008 18.0".
Text ProductAndVersion(const HostQuery& hostQuery);

}  // namespace ostrel
