// Reads a company from its file. The file is XML, made to be written by hand too: what an object
// lacks (ListID, times, balances) is filled in.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/company/Company.h"
#include "simulator/company/CompanyFile.h"
#include "simulator/values/Dates.h"

namespace ostrel::simulator {

/// What keeps a file from being a company, and the element at fault.
struct Obstacle {
  std::string why = {};          // in words; empty when the file is one
  std::string element = {};      // the name of a child of the root element; empty: it is not known
  std::size_t number = 0;        // which of the children of that name, from 0
  std::size_t child = kNoChild;  // which of its own children, from 0

  static constexpr std::size_t kNoChild = static_cast<std::size_t>(-1);
};

/// Nothing when the bytes are not a company file: not well formed, another root element than
/// "Company", more elements than a company may have, a behaviour that cannot be read, or the same
/// name or ID twice. now: the time of objects that have none. obstacle: may be null.
std::optional<Company> CompanyFromBytes(std::string_view bytes, const Stamp& now,
                                        Obstacle* obstacle = nullptr);
/// The company with the changes of its journal; `file` lists the records left out. On failure the
/// error number of platform/SystemError.h is in `error`: kInvalidData when the file is not a
/// company.
std::optional<Company> CompanyFromFile(CompanyFile& file, const Stamp& now, int& error);

}  // namespace ostrel::simulator
