// The qbXML engine: processes one request text on an open company, and describes the requests that
// it takes as a schema, with which the gateway reports where a request is wrong.
#pragma once

#include <string>

#include "simulator/company/OpenCompany.h"
#include "simulator/messages/Session.h"
#include "simulator/values/Dates.h"

namespace ostrel::simulator {

/// Returns the response: one "Rs" element for each message, in their order, with the status of its
/// own. A message that is refused leaves the others as they are, unless the request says that the
/// first error ends it. Changes are in the company's journal when this returns. Raises
/// RequestProcessorError for what QuickBooks refuses as a whole (malformed, unknown message or
/// element, unknown version); nothing has changed then, because every message is checked before the
/// first is processed.
Text ProcessQbxml(TextView request, OpenCompany& company, Session& session, const Stamp& now);

/// Returns a schema (XSD) of the requests that ProcessQbxml takes, made from the tables by which it
/// checks them; samples/qbxmlops30.xsd is this text. Every request that is not refused as malformed
/// is valid. A schema knows neither versions of qbXML nor the rules of iterators, nor that
/// only a request that asks for kept responses may be empty, so a valid request may be refused for
/// these.
std::string QbxmlSchema();

}  // namespace ostrel::simulator
