// Reads a company from its file. The file is XML, made to be written by hand too: what an object
// lacks (ListID, times, balances) is filled in.
#pragma once

#include <optional>
#include <string_view>

#include "simulator/company/Company.h"
#include "simulator/company/CompanyFile.h"
#include "simulator/values/Dates.h"

namespace ostrel::simulator {

/// Nothing when the bytes are not a company file: not well formed, another root element than
/// "Company", more elements than a company may have, a behaviour that cannot be read, or the same
/// name or ID twice. now: the time of objects that have none.
std::optional<Company> CompanyFromBytes(std::string_view bytes, const Stamp& now);
/// The company with the changes of its journal; `file` lists the records left out. On failure the
/// error number of platform/SystemError.h is in `error`: kInvalidData when the file is not a
/// company.
std::optional<Company> CompanyFromFile(CompanyFile& file, const Stamp& now, int& error);

}  // namespace ostrel::simulator
