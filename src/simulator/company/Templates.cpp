#include "simulator/company/Templates.h"

#include <string>
#include <utility>

#include "simulator/values/Dates.h"

namespace ostrel::simulator {
namespace {

// Names and types; their place is in their IDs. From memory: TemplateQueryRq.
constexpr std::pair<std::string_view, std::string_view> kTemplates[] = {
    {"Intuit Product Invoice", "Invoice"},
    {"Intuit Professional Invoice", "Invoice"},
    {"Intuit Service Invoice", "Invoice"},
    {"Custom Credit Memo", "CreditMemo"},
    {"Custom Estimate", "Estimate"},
    {"Custom Purchase Order", "PurchaseOrder"},
    {"Custom Sales Order", "SalesOrder"},
    {"Custom Sales Receipt", "SalesReceipt"},
    {"Custom Build Assembly", "BuildAssembly"},
};

}  // namespace

// Their numbers are below those that are given out to lists.
void AddTemplates(Company& company) {
  const Kind& kind = *FindKind("Template");
  int number = 0;
  for (const auto& [name, type] : kTemplates) {
    Element object{.name = std::string(kind.name)};
    object.attributes.push_back({std::string(kBuiltIn), "1"});
    object.Add("ListID", std::to_string(++number) + "0000-0");
    object.Add("TimeCreated", kEpoch.text);
    object.Add("TimeModified", kEpoch.text);
    object.Add("EditSequence", "1");
    object.Add("Name", name);
    object.Add("IsActive", "true");
    object.Add("TemplateType", type);
    company.Put(kind, std::move(object));
  }
}

}  // namespace ostrel::simulator
