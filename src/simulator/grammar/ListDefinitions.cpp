// The objects of lists, in the notation of Definitions.h.
// From public facts on qbXML 13.0.
#include "simulator/grammar/Definitions.h"

namespace ostrel::simulator {

std::string_view ListDefinitions() {
  return R"grammar(
AccountRet = %ListHead Name?:str31 FullName?:str159 IsActive?:bool ParentRef? Sublevel?:int
    AccountType?:&AccountTypes DetailAccountType?:&DetailAccountTypes
    SpecialAccountType?:&SpecialAccounts IsTaxAccount?:bool AccountNumber?:str7 BankNumber?:str25
    LastCheckNumber?:str Desc?:str200 Balance?:amount TotalBalance?:amount SalesTaxCodeRef?
    TaxLineInfoRet? CashFlowClassification?:=None|Operating|Investing|Financing|NotApplicable
    CurrencyRef?^8.0 DataExtRet*
AccountAdd = Name:str31 IsActive?:bool ParentRef? AccountType:&AccountTypes
    DetailAccountType?:&DetailAccountTypes AccountNumber?:str7 BankNumber?:str25 Desc?:str200
    OpenBalance?:amount OpenBalanceDate?:date SalesTaxCodeRef? TaxLineID?:int CurrencyRef?^8.0
AccountMod = %ListChange Name?:str31 IsActive?:bool ParentRef? AccountType?:&AccountTypes
    AccountNumber?:str7 BankNumber?:str25 Desc?:str200 OpenBalance?:amount OpenBalanceDate?:date
    SalesTaxCodeRef? TaxLineID?:int CurrencyRef?^8.0
SpecialAccountAdd = SpecialAccountType:&SpecialAccounts CurrencyRef?^8.0
AccountTaxLineInfoRet = TaxLineID?:int TaxLineName?:str256
LeadRet = %ListHead FullName?:str41 Status?:=Hot|Warm|Cold CompanyName?:str41 MainPhone?:str21
    AdditionalContactRef{0,3}^12.0 LocationsRet* LeadContactsRet*
LeadAdd = FullName:str41 Status?:=Hot|Warm|Cold CompanyName?:str41 MainPhone?:str21
    AdditionalContactRef{0,3}^12.0 Locations* LeadContacts*
LeadMod = %ListChange FullName:str41 Status?:=Hot|Warm|Cold CompanyName?:str41 MainPhone?:str21
    AdditionalContactRef{0,3}^12.0 LocationsMod* LeadContactsMod*
CustomerRet = %ListHead Name?:str41 FullName?:str209 IsActive?:bool ClassRef?^12.0 ParentRef?
    Sublevel?:int CompanyName?:str41 %PersonName Suffix?:str JobTitle?:str41^12.0 BillAddress?
    BillAddressBlock? ShipAddress? ShipAddressBlock? ShipToAddress{0,50}^12.0 PrintAs?:str41
    %Phones AdditionalContactRef{0,8}^12.0 ContactsRet*^12.0 CustomerTypeRef? TermsRef?
    SalesRepRef? Balance?:amount TotalBalance?:amount SalesTaxCodeRef? ItemSalesTaxRef?
    SalesTaxCountry?:=Australia|Canada|UK|US^8.0 ResaleNumber?:str15 AccountNumber?:str99
    CreditLimit?:amount PreferredPaymentMethodRef? CreditCardInfo? JobStatus?:&JobStatuses
    JobStartDate?:date JobProjectedEndDate?:date JobEndDate?:date JobDesc?:str99 JobTypeRef?
    Notes?:str4095 AdditionalNotesRet*^12.0 IsStatementWithParent?:bool
    DeliveryMethod?:=Email|Fax|Print PreferredDeliveryMethod?:=None|Email|Fax PriceLevelRef?
    ExternalGUID?:guid^9.0 TaxRegistrationNumber?:str30 CurrencyRef?^8.0 DataExtRet*
CustomerAdd = Name:str41 IsActive?:bool ClassRef?^12.0 ParentRef? CompanyName?:str41 %PersonName
    Suffix?:str JobTitle?:str41^12.0 BillAddress? ShipAddress? ShipToAddress{0,50}^12.0
    PrintAs?:str41 %Phones AdditionalContactRef{0,8}^12.0 Contacts*^12.0 CustomerTypeRef?
    TermsRef? SalesRepRef? OpenBalance?:amount OpenBalanceDate?:date SalesTaxCodeRef?
    ItemSalesTaxRef? SalesTaxCountry?:=Australia|Canada|UK|US^8.0 ResaleNumber?:str15
    AccountNumber?:str99 CreditLimit?:amount PreferredPaymentMethodRef? CreditCardInfo?
    JobStatus?:&JobStatuses JobStartDate?:date JobProjectedEndDate?:date JobEndDate?:date
    JobDesc?:str99 JobTypeRef? Notes?:str4095 AdditionalNotes*^12.0 IsStatementWithParent?:bool
    DeliveryMethod?:=Email|Fax|Print PreferredDeliveryMethod?:=None|Email|Fax PriceLevelRef?
    ExternalGUID?:guid^9.0 TaxRegistrationNumber?:str30 CurrencyRef?^8.0
CustomerMod = %ListChange Name?:str41 IsActive?:bool ClassRef?^12.0 ParentRef? CompanyName?:str41
    %PersonName Suffix?:str JobTitle?:str41^12.0 BillAddress? ShipAddress?
    ShipToAddress{0,50}^12.0 PrintAs?:str41 %Phones AdditionalContactRef{0,8}^12.0
    ContactsMod*^12.0 CustomerTypeRef? TermsRef? SalesRepRef? SalesTaxCodeRef? ItemSalesTaxRef?
    SalesTaxCountry?:=Australia|Canada|UK|US^8.0 ResaleNumber?:str15 AccountNumber?:str99
    CreditLimit?:amount PreferredPaymentMethodRef? CreditCardInfo? JobStatus?:&JobStatuses
    JobStartDate?:date JobProjectedEndDate?:date JobEndDate?:date JobDesc?:str99 JobTypeRef?
    Notes?:str4095 AdditionalNotesMod*^12.0 IsStatementWithParent?:bool
    DeliveryMethod?:=Email|Fax|Print PreferredDeliveryMethod?:=None|Email|Fax PriceLevelRef?
    TaxRegistrationNumber?:str30 CurrencyRef?^8.0
SickHours = HoursAvailable?:interval AccrualPeriod?:&AccrualPeriods HoursAccrued?:interval
    MaximumHours?:interval IsResettingHoursEachNewYear?:bool HoursUsed?:interval
    AccrualStartDate?:date
VacationHours = HoursAvailable?:interval AccrualPeriod?:&AccrualPeriods HoursAccrued?:interval
    MaximumHours?:interval IsResettingHoursEachNewYear?:bool HoursUsed?:interval
    AccrualStartDate?:date
Earnings = PayrollItemWageRef (Rate:price | RatePercent:percent)?
EmployeePayrollInfo = PayPeriod?:&PayPeriods ClassRef? (ClearEarnings:bool | Earnings+)?
    UseTimeDataToCreatePaychecks?:&UseTimeDataToCreatePaycheckses SickHours? VacationHours?
EmployeePayrollInfoMod = PayPeriod?:&PayPeriods ClassRef? (ClearEarnings:bool | Earnings+)?
    UseTimeDataToCreatePaychecks?:&UseTimeDataToCreatePaycheckses SickHours? VacationHours?
EmployeeRet = %ListHead Name?:str41 IsActive?:bool %PersonName Suffix?:str JobTitle?:str41^12.0
    SupervisorRef? Department?:str31 Description?:str64 TargetBonus?:amount EmployeeAddress?
    PrintAs?:str41 Phone?:str21 Mobile?:str21 Pager?:str21 PagerPIN?:str10 AltPhone?:str21
    Fax?:str21 SSN?:str11 Email?:str1023 AdditionalContactRef{0,8}^12.0 EmergencyContacts?
    EmployeeType?:&EmployeeTypes PartOrFullTime?:=PartTime|FullTime Exempt?:=Exempt|NonExempt
    KeyEmployee?:=Yes|No Gender?:=Male|Female HiredDate?:date OriginalHireDate?:date
    AdjustedServiceDate?:date ReleasedDate?:date BirthDate?:date USCitizen?:=Yes|No
    Ethnicity?:&Ethnicities Disabled?:=Yes|No DisabilityDesc?:str25 OnFile?:=Yes|No
    WorkAuthExpireDate?:date USVeteran?:=Yes|No MilitaryStatus?:=Active|Reserve
    AccountNumber?:str99 Notes?:str4095 AdditionalNotesRet*^12.0 BillingRateRef?
    EmployeePayrollInfo? ExternalGUID?:guid^9.0 DataExtRet*
EmployeeAdd = Name?:str IsActive?:bool %PersonName Suffix?:str JobTitle?:str41^12.0 SupervisorRef?
    Department?:str31 Description?:str64 TargetBonus?:amount EmployeeAddress? PrintAs?:str41
    Phone?:str21 Mobile?:str21 Pager?:str21 PagerPIN?:str10 AltPhone?:str21 Fax?:str21 SSN?:str15
    Email?:str1023 AdditionalContactRef{0,8}^12.0 EmergencyContacts? EmployeeType?:&EmployeeTypes
    PartOrFullTime?:=PartTime|FullTime Exempt?:=Exempt|NonExempt KeyEmployee?:=Yes|No
    Gender?:=Male|Female HiredDate?:date OriginalHireDate?:date AdjustedServiceDate?:date
    ReleasedDate?:date BirthDate?:date USCitizen?:=Yes|No Ethnicity?:&Ethnicities
    Disabled?:=Yes|No DisabilityDesc?:str25 OnFile?:=Yes|No WorkAuthExpireDate?:date
    USVeteran?:=Yes|No MilitaryStatus?:=Active|Reserve AccountNumber?:str99 Notes?:str4095
    AdditionalNotes*^12.0 BillingRateRef? EmployeePayrollInfo? ExternalGUID?:guid^9.0
EmployeeMod = %ListChange Name?:str IsActive?:bool %PersonName Suffix?:str JobTitle?:str41^12.0
    SupervisorRef? Department?:str31 Description?:str64 TargetBonus?:amount EmployeeAddress?
    PrintAs?:str41 Phone?:str21 Mobile?:str21 Pager?:str21 PagerPIN?:str10 AltPhone?:str21
    Fax?:str21 Email?:str1023 AdditionalContactRef{0,8}^12.0 EmergencyContacts?
    EmployeeType?:&EmployeeTypes PartOrFullTime?:=PartTime|FullTime Exempt?:=Exempt|NonExempt
    KeyEmployee?:=Yes|No HiredDate?:date OriginalHireDate?:date AdjustedServiceDate?:date
    ReleasedDate?:date BirthDate?:date USCitizen?:=Yes|No Ethnicity?:&Ethnicities
    Disabled?:=Yes|No DisabilityDesc?:str25 OnFile?:=Yes|No WorkAuthExpireDate?:date
    USVeteran?:=Yes|No MilitaryStatus?:=Active|Reserve AccountNumber?:str99 Notes?:str4095
    AdditionalNotesMod*^12.0 BillingRateRef? EmployeePayrollInfoMod?
OtherNameRet = %ListHead Name?:str41 IsActive?:bool CompanyName?:str41 %PersonName
    OtherNameAddress? OtherNameAddressBlock? Phone?:str21 AltPhone?:str21 Fax?:str21
    Email?:str1023 Contact?:str41 AltContact?:str41 AccountNumber?:str99 Notes?:str4095
    ExternalGUID?:guid^9.0 DataExtRet*
OtherNameAdd = Name:str41 IsActive?:bool CompanyName?:str41 %PersonName OtherNameAddress?
    Phone?:str21 AltPhone?:str21 Fax?:str21 Email?:str1023 Contact?:str41 AltContact?:str41
    AccountNumber?:str99 Notes?:str4095 ExternalGUID?:guid^9.0
OtherNameMod = %ListChange Name?:str41 IsActive?:bool CompanyName?:str41 %PersonName
    OtherNameAddress? Phone?:str21 AltPhone?:str21 Fax?:str21 Email?:str1023 Contact?:str41
    AltContact?:str41 AccountNumber?:str99 Notes?:str4095
VendorRet = %ListHead Name?:str41 IsActive?:bool ClassRef?^12.0 IsTaxAgency?:bool
    CompanyName?:str41 %PersonName Suffix?:str JobTitle?:str41^12.0 VendorAddress?
    VendorAddressBlock? ShipAddress? %Phones AdditionalContactRef{0,8}^12.0 ContactsRet*^12.0
    NameOnCheck?:str41 AccountNumber?:str99 Notes?:str4095 AdditionalNotesRet*^12.0 VendorTypeRef?
    TermsRef? CreditLimit?:amount VendorTaxIdent?:str15 IsVendorEligibleFor1099?:bool
    Balance?:amount BillingRateRef? ExternalGUID?:guid^9.0 SalesTaxCodeRef?
    SalesTaxCountry?:=Australia|Canada|UK|US^8.0 IsSalesTaxAgency?:bool SalesTaxReturnRef?
    TaxRegistrationNumber?:str30 ReportingPeriod?:=Monthly|Quarterly IsTaxTrackedOnPurchases?:bool
    TaxOnPurchasesAccountRef? IsTaxTrackedOnSales?:bool TaxOnSalesAccountRef? IsTaxOnTax?:bool
    PrefillAccountRef{0,3} CurrencyRef?^8.0 DataExtRet*
VendorAdd = Name:str41 IsActive?:bool ClassRef?^12.0 CompanyName?:str41 %PersonName Suffix?:str
    JobTitle?:str41^12.0 VendorAddress? ShipAddress? %Phones AdditionalContactRef{0,8}^12.0
    Contacts*^12.0 NameOnCheck?:str41 AccountNumber?:str99 Notes?:str4095 AdditionalNotes*^12.0
    VendorTypeRef? TermsRef? CreditLimit?:amount VendorTaxIdent?:str15
    IsVendorEligibleFor1099?:bool OpenBalance?:amount OpenBalanceDate?:date BillingRateRef?
    ExternalGUID?:guid^9.0 SalesTaxCodeRef? SalesTaxCountry?:=Australia|Canada|UK|US^8.0
    IsSalesTaxAgency?:bool SalesTaxReturnRef? TaxRegistrationNumber?:str30
    ReportingPeriod?:=Monthly|Quarterly IsTaxTrackedOnPurchases?:bool TaxOnPurchasesAccountRef?
    IsTaxTrackedOnSales?:bool TaxOnSalesAccountRef? IsTaxOnTax?:bool PrefillAccountRef{0,3}
    CurrencyRef?^8.0
VendorMod = %ListChange Name?:str41 IsActive?:bool ClassRef?^12.0 CompanyName?:str41 %PersonName
    Suffix?:str JobTitle?:str41^12.0 VendorAddress? ShipAddress? %Phones
    AdditionalContactRef{0,8}^12.0 ContactsMod*^12.0 NameOnCheck?:str41 AccountNumber?:str99
    Notes?:str4095 AdditionalNotesMod*^12.0 VendorTypeRef? TermsRef? CreditLimit?:amount
    VendorTaxIdent?:str15 IsVendorEligibleFor1099?:bool BillingRateRef? SalesTaxCodeRef?
    SalesTaxCountry?:=Australia|Canada|UK|US^8.0 IsSalesTaxAgency?:bool SalesTaxReturnRef?
    TaxRegistrationNumber?:str30 ReportingPeriod?:=Monthly|Quarterly IsTaxTrackedOnPurchases?:bool
    TaxOnPurchasesAccountRef? IsTaxTrackedOnSales?:bool TaxOnSalesAccountRef? IsTaxOnTax?:bool
    PrefillAccountRef{0,3} CurrencyRef?^8.0
StandardTermsRet = %ListHead Name?:str31 IsActive?:bool StdDueDays?:int StdDiscountDays?:int
    DiscountPct?:percent
StandardTermsAdd = Name:str31 IsActive?:bool StdDueDays?:int StdDiscountDays?:int
    DiscountPct?:percent
DateDrivenTermsRet = %ListHead Name?:str31 IsActive?:bool DayOfMonthDue?:int DueNextMonthDays?:int
    DiscountDayOfMonth?:int DiscountPct?:percent
DateDrivenTermsAdd = Name:str31 IsActive?:bool DayOfMonthDue:int DueNextMonthDays?:int
    DiscountDayOfMonth?:int DiscountPct?:percent
ClassRet = %ListHead Name?:str31 FullName?:str159 IsActive?:bool ParentRef? Sublevel?:int
ClassAdd = Name:str31 IsActive?:bool ParentRef?
ClassMod = %ListChange Name?:str31 IsActive?:bool ParentRef?
SalesRepRet = %ListHead Initial?:str5 IsActive?:bool SalesRepEntityRef?
SalesRepAdd = Initial:str5 IsActive?:bool SalesRepEntityRef
SalesRepMod = %ListChange Initial?:str5 IsActive?:bool SalesRepEntityRef?
CustomerTypeRet = %ListHead Name?:str31 FullName?:str159 IsActive?:bool ParentRef? Sublevel?:int
CustomerTypeAdd = Name:str31 IsActive?:bool ParentRef?
VendorTypeRet = %ListHead Name?:str31 FullName?:str159 IsActive?:bool ParentRef? Sublevel?:int
VendorTypeAdd = Name:str31 IsActive?:bool ParentRef?
JobTypeRet = %ListHead Name?:str31 FullName?:str159 IsActive?:bool ParentRef? Sublevel?:int
JobTypeAdd = Name:str31 IsActive?:bool ParentRef?
CustomerMsgRet = %ListHead Name?:str101 IsActive?:bool
CustomerMsgAdd = Name:str101 IsActive?:bool
PaymentMethodRet = %ListHead Name?:str31 IsActive?:bool PaymentMethodType?:&PaymentMethodTypes^7.0
PaymentMethodAdd = Name:str31 IsActive?:bool PaymentMethodType?:&PaymentMethodTypes^7.0
ShipMethodRet = %ListHead Name?:str15 IsActive?:bool
ShipMethodAdd = Name:str15 IsActive?:bool
SalesTaxCodeRet = %ListHead Name?:str3 IsActive?:bool IsTaxable?:bool Desc?:str31
    ItemPurchaseTaxRef? ItemSalesTaxRef?
SalesTaxCodeAdd = Name:str3 IsActive?:bool IsTaxable:bool Desc?:str31 ItemPurchaseTaxRef?
    ItemSalesTaxRef?
SalesTaxCodeMod = %ListChange Name?:str3 IsActive?:bool IsTaxable?:bool Desc?:str31
    ItemPurchaseTaxRef? ItemSalesTaxRef?
ToDoRet = %ListHead Notes?:str4095 IsActive?:bool Type?:&Types Priority?:=Low|Medium|High
    (CustomerRef? | EmployeeRef? | LeadRef? | VendorRef?)? IsDone?:bool ReminderDate?:date
    ReminderTime?:interval
ToDoAdd = Notes:str4095 IsActive?:bool Type?:&Types Priority?:=Low|Medium|High (CustomerRef? |
    EmployeeRef? | LeadRef? | VendorRef?)? IsDone?:bool ReminderDate?:date ReminderTime?:interval
ToDoMod = %ListChange Notes?:str4095 IsActive?:bool Type?:&Types Priority?:=Low|Medium|High
    (CustomerRef? | EmployeeRef? | LeadRef? | VendorRef?)? IsDone?:bool ReminderDate?:date
    ReminderTime?:interval
SalesOrPurchase = Desc?:str4095 (Price:price | PricePercent:percent)? AccountRef?
SalesAndPurchase = SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef? PurchaseDesc?:str4095
    PurchaseCost?:price PurchaseTaxCodeRef? ExpenseAccountRef? PrefVendorRef?
SalesOrPurchaseMod = Desc?:str4095 (Price:price | PricePercent:percent)? AccountRef?
    ApplyAccountRefToExistingTxns?:bool
SalesAndPurchaseMod = SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef?
    ApplyIncomeAccountRefToExistingTxns?:bool PurchaseDesc?:str4095 PurchaseCost?:price
    PurchaseTaxCodeRef? ExpenseAccountRef? ApplyExpenseAccountRefToExistingTxns?:bool
    PrefVendorRef?
ItemServiceRet = %ListHead Name?:str31 FullName?:str159 BarCodeValue?:str50^12.0 IsActive?:bool
    ClassRef?^12.0 ParentRef? Sublevel?:int UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool
    SalesTaxCodeRef? (SalesOrPurchase | SalesAndPurchase)? ExternalGUID?:guid^9.0 DataExtRet*
ItemServiceAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool SalesTaxCodeRef? (SalesOrPurchase |
    SalesAndPurchase) ExternalGUID?:guid^9.0
ItemServiceMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    UnitOfMeasureSetRef?^7.0 ForceUOMChange?:bool IsTaxIncluded?:bool SalesTaxCodeRef?
    (SalesOrPurchaseMod | SalesAndPurchaseMod)?
ItemNonInventoryRet = %ListHead Name?:str31 FullName?:str159 BarCodeValue?:str50^12.0
    IsActive?:bool ClassRef?^12.0 ParentRef? Sublevel?:int ManufacturerPartNumber?:str31
    UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool SalesTaxCodeRef? (SalesOrPurchase |
    SalesAndPurchase)? ExternalGUID?:guid^9.0 DataExtRet*
ItemNonInventoryAdd = Name:str31 BarCode?^12.0 IsActive?:bool ParentRef? ClassRef?^12.0
    ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool SalesTaxCodeRef?
    (SalesOrPurchase | SalesAndPurchase) ExternalGUID?:guid^9.0
ItemNonInventoryMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0
    ParentRef? ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0 ForceUOMChange?:bool
    IsTaxIncluded?:bool SalesTaxCodeRef? (SalesOrPurchaseMod | SalesAndPurchaseMod)?
ItemOtherChargeRet = %ListHead Name?:str31 FullName?:str159 BarCodeValue?:str50^12.0
    IsActive?:bool ClassRef?^12.0 ParentRef? Sublevel?:int IsTaxIncluded?:bool SalesTaxCodeRef?
    (SalesOrPurchase | SalesAndPurchase)? SpecialItemType?:&SpecialItems ExternalGUID?:guid^9.0
    DataExtRet*
ItemOtherChargeAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    IsTaxIncluded?:bool SalesTaxCodeRef? (SalesOrPurchase | SalesAndPurchase)
    ExternalGUID?:guid^9.0
ItemOtherChargeMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0
    ParentRef? IsTaxIncluded?:bool SalesTaxCodeRef? (SalesOrPurchaseMod | SalesAndPurchaseMod)?
ItemInventoryRet = %ListHead Name?:str31 FullName?:str159 BarCodeValue?:str50^12.0 IsActive?:bool
    ClassRef?^12.0 ParentRef? Sublevel?:int ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0
    IsTaxIncluded?:bool SalesTaxCodeRef? SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef?
    PurchaseDesc?:str4095 PurchaseCost?:price PurchaseTaxCodeRef? COGSAccountRef? PrefVendorRef?
    AssetAccountRef? ReorderPoint?:quantity Max?:quantity QuantityOnHand?:quantity
    AverageCost?:price QuantityOnOrder?:quantity QuantityOnSalesOrder?:quantity
    ExternalGUID?:guid^9.0 DataExtRet*
ItemInventoryAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool SalesTaxCodeRef?
    SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef? PurchaseDesc?:str4095
    PurchaseCost?:price PurchaseTaxCodeRef? COGSAccountRef? PrefVendorRef? AssetAccountRef?
    ReorderPoint?:quantity Max?:quantity QuantityOnHand?:quantity TotalValue?:amount
    InventoryDate?:date ExternalGUID?:guid^9.0
ItemInventoryMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0 ForceUOMChange?:bool
    IsTaxIncluded?:bool SalesTaxCodeRef? SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef?
    ApplyIncomeAccountRefToExistingTxns?:bool PurchaseDesc?:str4095 PurchaseCost?:price
    PurchaseTaxCodeRef? COGSAccountRef? ApplyCOGSAccountRefToExistingTxns?:bool PrefVendorRef?
    AssetAccountRef? ReorderPoint?:quantity Max?:quantity
ItemInventoryAssemblyLine = ItemInventoryRef Quantity?:quantity
ItemInventoryAssemblyRet = %ListHead Name?:str31 FullName?:str159 BarCodeValue?:str50^12.0
    IsActive?:bool ClassRef?^12.0 ParentRef? Sublevel?:int ManufacturerPartNumber?:str31
    UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool SalesTaxCodeRef? SalesDesc?:str4095
    SalesPrice?:price IncomeAccountRef? PurchaseDesc?:str4095 PurchaseCost?:price
    PurchaseTaxCodeRef? COGSAccountRef? PrefVendorRef? AssetAccountRef? BuildPoint?:quantity
    Max?:quantity QuantityOnHand?:quantity AverageCost?:price QuantityOnOrder?:quantity
    QuantityOnSalesOrder?:quantity ExternalGUID?:guid^9.0 ItemInventoryAssemblyLine* DataExtRet*
ItemInventoryAssemblyAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0 IsTaxIncluded?:bool SalesTaxCodeRef?
    SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef? PurchaseDesc?:str4095
    PurchaseCost?:price PurchaseTaxCodeRef? COGSAccountRef? PrefVendorRef? AssetAccountRef?
    BuildPoint?:quantity Max?:quantity QuantityOnHand?:quantity TotalValue?:amount
    InventoryDate?:date ExternalGUID?:guid^9.0 ItemInventoryAssemblyLine*
ItemInventoryAssemblyMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0
    ParentRef? ManufacturerPartNumber?:str31 UnitOfMeasureSetRef?^7.0 ForceUOMChange?:bool
    IsTaxIncluded?:bool SalesTaxCodeRef? SalesDesc?:str4095 SalesPrice?:price IncomeAccountRef?
    ApplyIncomeAccountRefToExistingTxns?:bool PurchaseDesc?:str4095 PurchaseCost?:price
    PurchaseTaxCodeRef? COGSAccountRef? PrefVendorRef? AssetAccountRef? BuildPoint?:quantity
    Max?:quantity (ClearItemsInGroup:bool | ItemInventoryAssemblyLine+)?
FixedAssetSalesInfo = SalesDesc:str50 SalesDate:date SalesPrice?:price SalesExpense?:price
FixedAssetSalesInfoMod = SalesDesc?:str50 SalesDate?:date SalesPrice?:price SalesExpense?:price
ItemFixedAssetRet = %ListHead Name?:str31 BarCodeValue?:str50^12.0 IsActive?:bool ClassRef?^12.0
    AcquiredAs?:=New|Old PurchaseDesc?:str50 PurchaseDate?:date PurchaseCost?:price
    VendorOrPayeeName?:str50 AssetAccountRef? FixedAssetSalesInfo? AssetDesc?:str50
    Location?:str50 PONumber?:str30 SerialNumber?:str30^11.0 WarrantyExpDate?:date Notes?:str4095
    AssetNumber?:str10 CostBasis?:amount YearEndAccumulatedDepreciation?:amount
    YearEndBookValue?:amount ExternalGUID?:guid^9.0 DataExtRet*
ItemFixedAssetAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 AcquiredAs:=New|Old
    PurchaseDesc:str50 PurchaseDate:date PurchaseCost?:price VendorOrPayeeName?:str50
    AssetAccountRef? FixedAssetSalesInfo? AssetDesc?:str50 Location?:str50 PONumber?:str30
    SerialNumber?:str30^11.0 WarrantyExpDate?:date Notes?:str4095 AssetNumber?:str10
    CostBasis?:amount YearEndAccumulatedDepreciation?:amount YearEndBookValue?:amount
    ExternalGUID?:guid^9.0
ItemFixedAssetMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0
    AcquiredAs?:=New|Old PurchaseDesc?:str50 PurchaseDate?:date PurchaseCost?:price
    VendorOrPayeeName?:str50 AssetAccountRef? FixedAssetSalesInfoMod? AssetDesc?:str50
    Location?:str50 PONumber?:str30 SerialNumber?:str30^11.0 WarrantyExpDate?:date Notes?:str4095
    AssetNumber?:str10 CostBasis?:amount YearEndAccumulatedDepreciation?:amount
    YearEndBookValue?:amount
ItemSubtotalRet = %ListHead Name?:str31 BarCodeValue?:str50^12.0 IsActive?:bool ItemDesc?:str
    SpecialItemType?:&SpecialItems ExternalGUID?:guid^9.0 DataExtRet*
ItemSubtotalAdd = Name:str31 BarCode?^12.0 IsActive?:bool ItemDesc?:str4095 ExternalGUID?:guid^9.0
ItemSubtotalMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ItemDesc?:str4095
ItemDiscountRet = %ListHead Name?:str31 FullName?:str159 BarCodeValue?:str50^12.0 IsActive?:bool
    ClassRef?^12.0 ParentRef? Sublevel?:int ItemDesc?:str4095 SalesTaxCodeRef? (DiscountRate:price
    | DiscountRatePercent:percent)? AccountRef? ExternalGUID?:guid^9.0 DataExtRet*
ItemDiscountAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    ItemDesc?:str4095 SalesTaxCodeRef? (DiscountRate:price | DiscountRatePercent:percent)?
    AccountRef? ExternalGUID?:guid^9.0
ItemDiscountMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ParentRef?
    ItemDesc?:str4095 SalesTaxCodeRef? (DiscountRate:price | DiscountRatePercent:percent)?
    AccountRef? ApplyAccountRefToExistingTxns?:bool
ItemPaymentRet = %ListHead Name?:str31 BarCodeValue?:str50^12.0 IsActive?:bool ClassRef?^12.0
    ItemDesc?:str4095 DepositToAccountRef? PaymentMethodRef? ExternalGUID?:guid^9.0 DataExtRet*
ItemPaymentAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ItemDesc?:str4095
    DepositToAccountRef? PaymentMethodRef? ExternalGUID?:guid^9.0
ItemPaymentMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0
    ItemDesc?:str4095 DepositToAccountRef? PaymentMethodRef?
ItemSalesTaxRet = %ListHead Name?:str31 BarCodeValue?:str50^12.0 IsActive?:bool ClassRef?^12.0
    ItemDesc?:str4095 TaxRate?:percent TaxVendorRef? SalesTaxReturnLineRef? ExternalGUID?:guid^9.0
    DataExtRet*
ItemSalesTaxAdd = Name:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0 ItemDesc?:str4095
    TaxRate?:percent TaxVendorRef? SalesTaxReturnLineRef? ExternalGUID?:guid^9.0
ItemSalesTaxMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ClassRef?^12.0
    ItemDesc?:str4095 TaxRate?:percent TaxVendorRef? SalesTaxReturnLineRef?
ItemSalesTaxGroupRet = %ListHead Name?:str31 BarCodeValue?:str50^12.0 IsActive?:bool
    ItemDesc?:str4095 ExternalGUID?:guid^9.0 ItemSalesTaxRef* DataExtRet*
ItemSalesTaxGroupAdd = Name:str31 BarCode?^12.0 IsActive?:bool ItemDesc?:str4095
    ExternalGUID?:guid^9.0 ItemSalesTaxRef+
ItemSalesTaxGroupMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ItemDesc?:str4095
    ItemSalesTaxRef*
ItemGroupLine = ItemRef? Quantity?:quantity UnitOfMeasure?:str31^7.0
ItemGroupRet = %ListHead Name?:str31 BarCodeValue?:str50^12.0 IsActive?:bool ItemDesc?:str4095
    UnitOfMeasureSetRef?^7.0 IsPrintItemsInGroup?:bool SpecialItemType?:&SpecialItems
    ExternalGUID?:guid^9.0 ItemGroupLine* DataExtRet*
ItemGroupAdd = Name:str31 BarCode?^12.0 IsActive?:bool ItemDesc?:str4095 UnitOfMeasureSetRef?^7.0
    IsPrintItemsInGroup?:bool ExternalGUID?:guid^9.0 ItemGroupLine*
ItemGroupMod = %ListChange Name?:str31 BarCode?^12.0 IsActive?:bool ItemDesc?:str4095
    UnitOfMeasureSetRef?^7.0 ForceUOMChange?:bool IsPrintItemsInGroup?:bool
    (ClearItemsInGroup:bool | ItemGroupLine+)?
SpecialItemAdd = SpecialItemType:&SpecialItems BarCode?^12.0 ExternalGUID?:guid^9.0
PayrollItemWageRet = %ListHead Name?:str31 IsActive?:bool WageType?:&WageTypes ExpenseAccountRef?
PayrollItemWageAdd = Name:str31 IsActive?:bool WageType:&WageTypes ExpenseAccountRef
PayrollItemNonWageRet = %ListHead Name?:str31 IsActive?:bool
    NonWageType?:=Addition|CompanyContribution|Deduction|DirectDeposit|Tax ExpenseAccountRef?
    LiabilityAccountRef?
TemplateRet = %ListHead Name?:str31 IsActive?:bool TemplateType?:&TemplateTypes
PriceLevelPerItemRet = ItemRef (CustomPrice:price | CustomPricePercent:percent)
PriceLevelRet = %ListHead Name?:str31 IsActive?:bool PriceLevelType?:=FixedPercentage|PerItem
    (PriceLevelFixedPercentage:percent | PriceLevelPerItemRet+ CurrencyRef?^8.0)?
PriceLevelPerItem = ItemRef ((CustomPrice:price | CustomPricePercent:percent) |
    AdjustPercentage:percent AdjustRelativeTo:=StandardPrice|Cost|CurrentCustomPrice)
PriceLevelAdd = Name:str31 IsActive?:bool (PriceLevelFixedPercentage:percent | PriceLevelPerItem*
    CurrencyRef?^8.0)
PriceLevelMod = %ListChange Name?:str31 IsActive?:bool (PriceLevelFixedPercentage:percent |
    PriceLevelPerItem* CurrencyRef?^8.0)?
BillingRatePerItemRet = ItemRef (CustomRate:price | CustomRatePercent:percent)
BillingRateRet = %ListHead Name?:str31 BillingRateType?:=FixedRate|PerItem (FixedBillingRate:price
    | BillingRatePerItemRet+)?
BillingRatePerItem = ItemRef ((CustomRate:price | CustomRatePercent:percent) |
    AdjustPercentage:percent AdjustBillingRateRelativeTo:=StandardRate|CurrentCustomRate)
BillingRateAdd = Name:str31 (FixedBillingRate:price | BillingRatePerItem+)
VehicleRet = %ListHead Name?:str31 IsActive?:bool Desc?:str256
VehicleAdd = Name:str31 IsActive?:bool Desc?:str256
VehicleMod = %ListChange Name?:str31 IsActive?:bool Desc?:str256
BaseUnit = Name:str31 Abbreviation:str31
RelatedUnit = Name:str31 Abbreviation:str31 ConversionRatio:price
DefaultUnit = UnitUsedFor:=Purchase|Sales|Shipping Unit:str31
UnitOfMeasureSetRet = %ListHead Name?:str31 IsActive?:bool UnitOfMeasureType?:&UnitOfMeasureTypes
    BaseUnit? RelatedUnit* DefaultUnit*
UnitOfMeasureSetAdd = Name:str31 IsActive?:bool UnitOfMeasureType:&UnitOfMeasureTypes BaseUnit
    RelatedUnit* DefaultUnit*
RateHistory = Rate:price EffectiveDate:date
RateEntry = Rate:price EffectiveDate:date
WorkersCompCodeRet = %ListHead Name?:str13 IsActive?:bool Desc?:str31 CurrentRate?:price
    CurrentEffectiveDate?:date NextRate?:price NextEffectiveDate?:date RateHistory*
WorkersCompCodeAdd = Name:str13 IsActive?:bool Desc?:str31 RateEntry+
WorkersCompCodeMod = %ListChange Name?:str13 IsActive?:bool Desc?:str31 RateEntry*
CategoryAccountMapping = MappingCategory:&MappingCategories AccountRef* Threshold?:amount
MappingAccount = AccountRef ForceMapping?:bool
CategoryAccountMappingMod = MappingCategory:&MappingCategories MappingAccount* Threshold?:amount
Form1099CategoryAccountMappingRet = IsFiling1099Misc:bool CategoryAccountMapping*
Form1099CategoryAccountMappingMod = IsFiling1099Misc?:bool CategoryAccountMappingMod*
SalesTaxReturnRet = ListID:id FullName?:str Desc?:str
SalesTaxReturnLineRet = ListID:id FullName?:str LineType?:&TaxLineTypes
CurrencyFormat = ThousandSeparator?:=Comma|Period|Space|Apostrophe
    ThousandSeparatorGrouping?:=XX_XXX_XXX|X_XX_XX_XXX DecimalPlaces?:=0|2
    DecimalSeparator?:=Period|Comma
CurrencyRet = %ListHead Name?:str64 IsActive?:bool CurrencyCode?:str3 CurrencyFormat?
    IsUserDefinedCurrency?:bool ExchangeRate?:float^8.0 AsOfDate?:date
CurrencyAdd = Name:str64 IsActive?:bool CurrencyCode:str3 CurrencyFormat?
CurrencyMod = %ListChange Name?:str64 IsActive?:bool CurrencyCode?:str3 CurrencyFormat?
PayrollLastPeriodRet = PeriodStartDate:date PeriodEndDate:date
InventorySiteRet = %ListHead Name?:str31 IsActive?:bool ParentSiteRef? IsDefaultSite?:bool
    SiteDesc?:str100 Contact?:str41 Phone?:str21 Fax?:str21 Email?:str1023 SiteAddress?
    SiteAddressBlock?
InventorySiteAdd = Name:str31 IsActive?:bool ParentSiteRef? SiteDesc?:str100 Contact?:str41
    Phone?:str21 Fax?:str21 Email?:str1023 SiteAddress?
InventorySiteMod = %ListChange Name?:str31 IsActive?:bool ParentSiteRef? SiteDesc?:str100
    Contact?:str41 Phone?:str21 Fax?:str21 Email?:str1023 SiteAddress?
)grammar";
}

}  // namespace ostrel::simulator
