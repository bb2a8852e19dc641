// Checks a request that QuickBooks could not parse against the qbXML schema beside the program.
#pragma once

#include "platform/SchemaValidation.h"
#include "util/Text.h"

namespace ostrel {

/// True and an empty report for a valid request; else a report of the first fault. Never raises.
bool ValidateRequest(TextView request, Text& report);

/// The text that is validated: the request without its qbXML instruction, with an XML prolog.
Text PrepareForValidation(TextView request);
/// The fault in readable lines, with an excerpt of the validated text; line breaks are CR LF.
Text DescribeFault(const platform::ParseFault& fault, TextView validatedText);

}  // namespace ostrel
