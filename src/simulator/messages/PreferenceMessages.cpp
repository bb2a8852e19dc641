// The preferences of a company, as QuickBooks sets them for a new one; a company file may have a
// group of its own in place of each. And what only a QuickBooks with a window can do.
// From memory: PreferencesQueryRq, CompanyActivityQueryRq, ListDisplayAddRq, ListDisplayModRq,
// TxnDisplayAddRq, TxnDisplayModRq.
#include "simulator/company/Objects.h"
#include "simulator/messages/Messages.h"
#include "simulator/values/Dates.h"
#include "simulator/xml/XmlReader.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kNewCompany = R"(<PreferencesRet>
<AccountingPreferences><IsUsingAccountNumbers>false</IsUsingAccountNumbers>
<IsRequiringAccounts>true</IsRequiringAccounts><IsUsingClassTracking>true</IsUsingClassTracking>
<IsUsingAuditTrail>true</IsUsingAuditTrail>
<IsAssigningJournalEntryNumbers>true</IsAssigningJournalEntryNumbers></AccountingPreferences>
<FinanceChargePreferences><AnnualInterestRate>0.00</AnnualInterestRate>
<MinFinanceCharge>0.00</MinFinanceCharge><GracePeriod>0</GracePeriod>
<IsAssessingForOverdueCharges>false</IsAssessingForOverdueCharges>
<CalculateChargesFrom>DueDate</CalculateChargesFrom>
<IsMarkedToBePrinted>false</IsMarkedToBePrinted></FinanceChargePreferences>
<JobsAndEstimatesPreferences><IsUsingEstimates>true</IsUsingEstimates>
<IsUsingProgressInvoicing>false</IsUsingProgressInvoicing>
<IsPrintingItemsWithZeroAmounts>false</IsPrintingItemsWithZeroAmounts>
</JobsAndEstimatesPreferences>
<MultiCurrencyPreferences><IsMultiCurrencyOn>false</IsMultiCurrencyOn></MultiCurrencyPreferences>
<MultiLocationInventoryPreferences>
<IsMultiLocationInventoryAvailable>false</IsMultiLocationInventoryAvailable>
<IsMultiLocationInventoryEnabled>false</IsMultiLocationInventoryEnabled>
</MultiLocationInventoryPreferences>
<PurchasesAndVendorsPreferences><IsUsingInventory>true</IsUsingInventory>
<DaysBillsAreDue>10</DaysBillsAreDue>
<IsAutomaticallyUsingDiscounts>false</IsAutomaticallyUsingDiscounts>
</PurchasesAndVendorsPreferences>
<ReportsPreferences><AgingReportBasis>AgeFromDueDate</AgingReportBasis>
<SummaryReportBasis>Accrual</SummaryReportBasis></ReportsPreferences>
<SalesAndCustomersPreferences>
<IsTrackingReimbursedExpensesAsIncome>false</IsTrackingReimbursedExpensesAsIncome>
<IsAutoApplyingPayments>true</IsAutoApplyingPayments>
<PriceLevels><IsUsingPriceLevels>true</IsUsingPriceLevels>
<IsRoundingSalesPriceUp>false</IsRoundingSalesPriceUp></PriceLevels>
</SalesAndCustomersPreferences>
<TimeTrackingPreferences><FirstDayOfWeek>Monday</FirstDayOfWeek></TimeTrackingPreferences>
<CurrentAppAccessRights><IsAutomaticLoginAllowed>false</IsAutomaticLoginAllowed>
<IsPersonalDataAccessAllowed>true</IsPersonalDataAccessAllowed></CurrentAppAccessRights>
<ItemsAndInventoryPreferences>
<EnhancedInventoryReceivingEnabled>false</EnhancedInventoryReceivingEnabled>
<FIFOEnabled>false</FIFOEnabled><IsBarcodeEnabled>false</IsBarcodeEnabled>
</ItemsAndInventoryPreferences>
</PreferencesRet>)";

Element PreferencesOfNewCompany() {
  XmlDocument document;
  ReadXmlBytes(kNewCompany, Company::kMostElements, document);
  return document.root;
}

// The first object of a list, with that word in a field; nothing without one.
Target FirstOf(const Company& company, std::string_view kindName, std::string_view field,
               std::string_view word) {
  const Kind& kind = *FindKind(kindName);
  for (const auto& [key, object] : company.List(kind).InOrder()) {
    if (field.empty() || object.ChildText(field) == word) return {&kind, &object};
  }
  return {};
}

// A company that charges sales tax has an item and codes for it.
Element SalesTaxPreferences(const Company& company) {
  Element group{.name = "SalesTaxPreferences"};
  const Target item = FirstOf(company, "ItemSalesTax", "", "");
  const Target taxable = FirstOf(company, "SalesTaxCode", "IsTaxable", "true");
  const Target untaxed = FirstOf(company, "SalesTaxCode", "IsTaxable", "false");
  if (!item || !taxable || !untaxed) return group;
  group.children.push_back(ReferenceTo("DefaultItemSalesTaxRef", item));
  group.Add("PaySalesTax", "Monthly");
  group.children.push_back(ReferenceTo("DefaultTaxableSalesTaxCodeRef", taxable));
  group.children.push_back(ReferenceTo("DefaultNonTaxableSalesTaxCodeRef", untaxed));
  return group;
}

}  // namespace

Response QueryPreferences(const Call& call) {
  const Company& company = call.company.Data();
  Element ret{.name = "PreferencesRet"};
  for (Element& group : PreferencesOfNewCompany().children) {
    if (group.name == "TimeTrackingPreferences") {
      Element tax = SalesTaxPreferences(company);
      if (!tax.children.empty()) ret.children.push_back(std::move(tax));
    }
    ret.children.push_back(std::move(group));
  }
  if (const Element* own = company.Preferences()) {
    for (const Element& group : own->children) {
      if (Element* held = ret.Child(group.name)) *held = group;
    }
  }
  return Listed(call, {ret});
}

// A company of the stand-in has been neither restored nor condensed.
Response QueryCompanyActivity(const Call& call) {
  Element ret{.name = "CompanyActivityRet"};
  ret.Add("LastRestoreTime", kEpoch.text);
  ret.Add("LastCondenseTime", kEpoch.text);
  return Listed(call, {ret});
}

Response RefuseToShow(const Call&) { return {NoWindow()}; }

}  // namespace ostrel::simulator
