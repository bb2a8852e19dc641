// What the stand-in makes of a field: which objects a reference names, what a new object has that
// was not given the field, and where it takes that from.
#pragma once

#include <string_view>

#include "simulator/kinds/Fields.h"

namespace ostrel::simulator {

/// "InvoiceLine" of "InvoiceLineRet", "InvoiceLineAdd" and "InvoiceLineMod".
std::string_view BaseName(std::string_view name);

/// The kinds of what a reference of that name leads to ("Account" for "IncomeAccountRef"); empty
/// for one that has no kinds of its own, as ParentRef.
std::string_view KindsReferredBy(std::string_view reference);

/// `owner` is the name of the definition that the field stands in ("InvoiceLineRet").
void GiveMeaning(std::string_view kind, std::string_view owner, Field& field);

}  // namespace ostrel::simulator
