// The records of a company (kinds/RecordKinds.cpp): they are numbered in the order in which they
// are made, and found by walking over the few that there are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "simulator/company/Draft.h"

namespace ostrel::simulator {

/// The number of a record, from 1.
std::size_t NumberOf(const Element& record);
/// The ID of the next record of a list: "DataExtDef-0000000001".
std::string NewRecordId(const ObjectList& list);

/// The records of that kind, oldest first.
const ObjectList::Objects& Records(const Company& company, std::string_view kind);
/// A record with the next ID, which has nothing in it yet. One at a time: the next one has the same
/// ID until this one is in the company.
Element NewRecord(const Company& company, std::string_view kind);

}  // namespace ostrel::simulator
