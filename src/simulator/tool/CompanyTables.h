// A company as tables for people.
#pragma once

#include "simulator/company/Company.h"

namespace ostrel::simulator {

/// A table for each of the kinds that has objects. Columns are what these have of what one looks
/// for first.
Text CompanyTables(const Company& company, const KindList& kinds);

}  // namespace ostrel::simulator
