// Processes one qbXML request text on an open company.
#pragma once

#include "simulator/company/OpenCompany.h"
#include "simulator/messages/Session.h"
#include "simulator/values/Stamp.h"

namespace ostrel::simulator {

/// Returns the response. Raises RequestProcessorError for what QuickBooks refuses as a
/// whole (malformed, unknown message or element, unknown version); nothing has changed then,
/// because every message is checked before the first is processed.
Text ProcessQbxml(TextView request, OpenCompany& company, Session& session, const Stamp& now);

}  // namespace ostrel::simulator
