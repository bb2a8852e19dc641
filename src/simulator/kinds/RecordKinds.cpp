// The records of a company: what it remembers beside its lists and transactions. They are kept in
// its file and its journal like all objects.
#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

constexpr Kind Record(std::string_view name) {
  return {.name = name, .category = Category::kRecord};
}

constexpr Kind kKinds[] = {
    Record("DataExtDef"),      // the definition of a custom field
    Record("CompanyDataExt"),  // the custom fields of the company itself
    Record("Deletion"),        // an object that was deleted
    Record("MessageSet"),      // a request that can be asked for again, and its responses
};

}  // namespace

std::span<const Kind> RecordKinds() { return kKinds; }

}  // namespace ostrel::simulator
