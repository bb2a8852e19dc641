#include "simulator/kinds/Fields.h"

#include <algorithm>

namespace ostrel::simulator {
namespace {

bool IsSame(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  return one.empty() || (one.front() == other.front() && one == other);
}

}  // namespace

const Field* FindField(std::span<const Field> fields, std::string_view name, Use use) {
  const auto found = std::ranges::find_if(
      fields, [&](const Field& field) { return IsSame(field.NameIn(use), name); });
  return found == fields.end() || name.empty() ? nullptr : &*found;
}

const Field* FieldFinder::Find(std::string_view name) {
  const std::size_t count = oFields.size();
  for (std::size_t i = 0; i < count && !name.empty(); ++i) {
    const std::size_t at = lNext + i < count ? lNext + i : lNext + i - count;
    if (!IsSame(oFields[at].NameIn(iUse), name)) continue;
    lNext = at;
    return &oFields[at];
  }
  return nullptr;
}

}  // namespace ostrel::simulator
