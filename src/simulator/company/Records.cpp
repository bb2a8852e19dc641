#include "simulator/company/Records.h"

#include <charconv>
#include <cstdio>

namespace ostrel::simulator {
namespace {

constexpr std::string_view kRecordId = "RecordID";

}  // namespace

std::size_t NumberOf(const Element& record) {
  const std::string_view id = record.ChildText(kRecordId);
  const std::size_t dash = id.rfind('-');
  std::size_t number = 0;
  if (dash != std::string_view::npos) {
    std::from_chars(id.data() + dash + 1, id.data() + id.size(), number);
  }
  return number;
}

std::string NewRecordId(const ObjectList& list) {
  const auto& records = list.InOrder();
  const std::size_t last = records.empty() ? 0 : NumberOf(records.rbegin()->second);
  char digits[24];
  std::snprintf(digits, sizeof digits, "%010zu", last + 1);
  return std::string(list.OfKind().name).append("-").append(digits);
}

const ObjectList::Objects& Records(const Company& company, std::string_view kind) {
  return company.List(*FindKind(kind)).InOrder();
}

Element NewRecord(const Company& company, std::string_view kind) {
  Element record{.name = std::string(kind)};
  record.Add(kRecordId, NewRecordId(company.List(*FindKind(kind))));
  return record;
}

}  // namespace ostrel::simulator
