// The messages, and the filters of queries, in the notation of Definitions.h.
// From public facts on qbXML 13.0.
#include "simulator/grammar/Definitions.h"

namespace ostrel::simulator {

std::string_view MessageDefinitions() {
  return R"grammar(
TransactionModifiedDateRangeFilter = ((FromModifiedDate?:datetime ToModifiedDate?:datetime)? |
    DateMacro:&DateMacros)
TransactionDateRangeFilter = ((FromTxnDate?:date ToTxnDate?:date)? | DateMacro:&DateMacros)
TransactionEntityFilter = (EntityTypeFilter:&EntityTypeFilters | ListID+:id | FullName+:str |
    ListIDWithChildren:id | FullNameWithChildren:str)
TransactionAccountFilter = (AccountTypeFilter:&AccountFilterTypes | ListID+:id | FullName+:str |
    ListIDWithChildren:id | FullNameWithChildren:str)
TransactionItemFilter = (ItemTypeFilter:&ItemTypes | ListID+:id | FullName+:str |
    ListIDWithChildren:id | FullNameWithChildren:str)
TransactionClassFilter = (ListID+:id | FullName+:str | ListIDWithChildren:id |
    FullNameWithChildren:str)
TransactionTypeFilter = TxnTypeFilter+:&TxnFilterTypes
ReportPeriod = FromReportDate?:date ToReportDate?:date
ReportAccountFilter = (AccountTypeFilter:&AccountFilterTypes | ListID+:id | FullName+:str |
    ListIDWithChildren:id | FullNameWithChildren:str)
ReportEntityFilter = (EntityTypeFilter:&EntityTypeFilters | ListID+:id | FullName+:str |
    ListIDWithChildren:id | FullNameWithChildren:str)
ReportItemFilter = (ItemTypeFilter:&ItemTypes | ListID+:id | FullName+:str | ListIDWithChildren:id
    | FullNameWithChildren:str)
ReportTxnTypeFilter = TxnTypeFilter+:&TxnFilterTypes
ReportClassFilter = (ListID+:id | FullName+:str | ListIDWithChildren:id |
    FullNameWithChildren:str)
ReportModifiedDateRangeFilter = FromReportModifiedDate?:date ToReportModifiedDate?:date
DataExtDefAdd = OwnerID:guid DataExtName:str31 DataExtType:&DataExtTypes
    AssignToObject*:&ExtendedObjects DataExtListRequire?:bool DataExtTxnRequire?:bool
    DataExtFormatString?:str
DataExtDefMod = OwnerID:guid DataExtName:str31 DataExtNewName?:str31
    AssignToObject*:&ExtendedObjects RemoveFromObject*:&ExtendedObjects DataExtListRequire?:bool
    DataExtTxnRequire?:bool DataExtFormatString?:str
DataExtDefRet = OwnerID?:guid DataExtID:int DataExtName?:str31 DataExtType?:&DataExtTypes
    AssignToObject*:&ExtendedObjects DataExtListRequire:bool DataExtTxnRequire:bool
    DataExtFormatString:str
DataExtDefDelRet = OwnerID:guid DataExtName:str31 TimeDeleted?:datetime
DataExt = OwnerID:guid DataExtName:str31 DataExtValue:str
DataExtAdd = OwnerID:guid DataExtName:str31 (ListDataExtType:&DisplayedLists ListObjRef |
    TxnDataExtType:&ExtendedTxns TxnID:macro TxnLineID?:id | OtherDataExtType:=Company)
    DataExtValue:str
DataExtMod = OwnerID:guid DataExtName:str31 (ListDataExtType:&DisplayedLists ListObjRef |
    TxnDataExtType:&ExtendedTxns TxnID:id TxnLineID?:id | OtherDataExtType:=Company)
    DataExtValue:str
DataExtRet = OwnerID?:guid DataExtName:str31 DataExtType:&DataExtTypes DataExtValue:str
DataExtDel = OwnerID:guid DataExtName:str31 (ListDataExtType:&DisplayedLists ListObjRef |
    TxnDataExtType:&ExtendedTxns TxnID:id TxnLineID?:id | OtherDataExtType:=Company)
DataExtDelRet = OwnerID:guid DataExtName:str31 (ListDataExtType:&DisplayedLists ListObjRef |
    TxnDataExtType:&ExtendedTxns TxnID:id TxnLineID?:id | OtherDataExtType:=Company)?
    TimeDeleted?:datetime

HostQueryRq = IncludeListMetaData? %RetElements
CompanyQueryRq = %RetElements OwnerID*:guid^2.0
CompanyActivityQueryRq = %RetElements
PreferencesQueryRq = %RetElements
AccountAddRq = AccountAdd %RetElements
AccountModRq = AccountMod %RetElements
AccountQueryRq = @metaData? (%ListKeys | %ListFilters AccountType*:&AccountTypes CurrencyFilter?)?
    %RetElements OwnerID*:guid^2.0
SpecialAccountAddRq = SpecialAccountAdd %RetElements
AccountTaxLineInfoQueryRq =
LeadAddRq = LeadAdd %RetElements
LeadModRq = LeadMod %RetElements
LeadQueryRq = @metaData? @iterator? @iteratorID? (ListID+:id | Name+:str | MaxReturned?:count
    FromModifiedDate?:datetime ToModifiedDate?:datetime (NameFilter | NameRangeFilter)?)?
    %RetElements
CustomerAddRq = CustomerAdd %RetElements
CustomerModRq = CustomerMod %RetElements
CustomerQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters TotalBalanceFilter?
    CurrencyFilter? ClassFilter?)? %RetElements OwnerID*:guid^2.0
EmployeeAddRq = EmployeeAdd %RetElements
EmployeeModRq = EmployeeMod %RetElements
EmployeeQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements OwnerID*:guid^2.0
OtherNameAddRq = OtherNameAdd %RetElements
OtherNameModRq = OtherNameMod %RetElements
OtherNameQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements OwnerID*:guid^2.0
VendorAddRq = VendorAdd %RetElements
VendorModRq = VendorMod %RetElements
VendorQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters TotalBalanceFilter?
    CurrencyFilter? ClassFilter?)? %RetElements OwnerID*:guid^2.0
EntityQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters)? %RetElements
StandardTermsAddRq = StandardTermsAdd %RetElements
StandardTermsQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
DateDrivenTermsAddRq = DateDrivenTermsAdd %RetElements
DateDrivenTermsQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
TermsQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
ClassAddRq = ClassAdd %RetElements
ClassModRq = ClassMod %RetElements
ClassQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
SalesRepAddRq = SalesRepAdd %RetElements
SalesRepModRq = SalesRepMod %RetElements
SalesRepQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
CustomerTypeAddRq = CustomerTypeAdd %RetElements
CustomerTypeQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
VendorTypeAddRq = VendorTypeAdd %RetElements
VendorTypeQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
JobTypeAddRq = JobTypeAdd %RetElements
JobTypeQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
CustomerMsgAddRq = CustomerMsgAdd %RetElements
CustomerMsgQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
PaymentMethodAddRq = PaymentMethodAdd %RetElements
PaymentMethodQueryRq = @metaData? (%ListKeys | %ListFilters
    PaymentMethodType*:&PaymentMethodTypes^7.0)? %RetElements
ShipMethodAddRq = ShipMethodAdd %RetElements
ShipMethodQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
SalesTaxCodeAddRq = SalesTaxCodeAdd %RetElements
SalesTaxCodeModRq = SalesTaxCodeMod %RetElements
SalesTaxCodeQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
ToDoAddRq = ToDoAdd %RetElements
ToDoModRq = ToDoMod %RetElements
ToDoQueryRq = @metaData? (ListID+:id | %ListFilters DoneStatus?:=NotDoneOnly|DoneOnly|All)?
    %RetElements
ItemServiceAddRq = ItemServiceAdd %RetElements
ItemServiceModRq = ItemServiceMod %RetElements
ItemServiceQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters ClassFilter?)?
    %RetElements OwnerID*:guid^2.0
ItemNonInventoryAddRq = ItemNonInventoryAdd %RetElements
ItemNonInventoryModRq = ItemNonInventoryMod %RetElements
ItemNonInventoryQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters
    ClassFilter?)? %RetElements OwnerID*:guid^2.0
ItemOtherChargeAddRq = ItemOtherChargeAdd %RetElements
ItemOtherChargeModRq = ItemOtherChargeMod %RetElements
ItemOtherChargeQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters
    ClassFilter?)? %RetElements OwnerID*:guid^2.0
ItemInventoryAddRq = ItemInventoryAdd %RetElements
ItemInventoryModRq = ItemInventoryMod %RetElements
ItemInventoryQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters ClassFilter?)?
    %RetElements OwnerID*:guid^2.0
ItemInventoryAssemblyAddRq = ItemInventoryAssemblyAdd %RetElements
ItemInventoryAssemblyModRq = ItemInventoryAssemblyMod %RetElements
ItemInventoryAssemblyQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters
    ClassFilter?)? %RetElements OwnerID*:guid^2.0
ItemFixedAssetAddRq = ItemFixedAssetAdd %RetElements
ItemFixedAssetModRq = ItemFixedAssetMod %RetElements
ItemFixedAssetQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters
    ClassFilter?)? %RetElements OwnerID*:guid^2.0
ItemSubtotalAddRq = ItemSubtotalAdd %RetElements
ItemSubtotalModRq = ItemSubtotalMod %RetElements
ItemSubtotalQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters)? %RetElements
    OwnerID*:guid^2.0
ItemDiscountAddRq = ItemDiscountAdd %RetElements
ItemDiscountModRq = ItemDiscountMod %RetElements
ItemDiscountQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters ClassFilter?)?
    %RetElements OwnerID*:guid^2.0
ItemPaymentAddRq = ItemPaymentAdd %RetElements
ItemPaymentModRq = ItemPaymentMod %RetElements
ItemPaymentQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters ClassFilter?)?
    %RetElements OwnerID*:guid^2.0
ItemSalesTaxAddRq = ItemSalesTaxAdd %RetElements
ItemSalesTaxModRq = ItemSalesTaxMod %RetElements
ItemSalesTaxQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters ClassFilter?)?
    %RetElements OwnerID*:guid^2.0
ItemSalesTaxGroupAddRq = ItemSalesTaxGroupAdd %RetElements
ItemSalesTaxGroupModRq = ItemSalesTaxGroupMod %RetElements
ItemSalesTaxGroupQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters)?
    %RetElements OwnerID*:guid^2.0
ItemGroupAddRq = ItemGroupAdd %RetElements
ItemGroupModRq = ItemGroupMod %RetElements
ItemGroupQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters)? %RetElements
    OwnerID*:guid^2.0
SpecialItemAddRq = SpecialItemAdd %RetElements
ItemQueryRq = @metaData? @iterator? @iteratorID? (%ListKeys | %ListFilters)? %RetElements
    OwnerID*:guid^2.0
PayrollItemWageAddRq = PayrollItemWageAdd %RetElements
PayrollItemWageQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
PayrollItemNonWageQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
TemplateQueryRq = @metaData? %RetElements
PriceLevelAddRq = PriceLevelAdd %RetElements
PriceLevelModRq = PriceLevelMod %RetElements
PriceLevelQueryRq = @metaData? (%ListKeys | %ListFilters ItemRef? CurrencyFilter?)? %RetElements
BillingRateAddRq = BillingRateAdd %RetElements
BillingRateQueryRq = @metaData? (%ListKeys | MaxReturned?:count FromModifiedDate?:datetime
    ToModifiedDate?:datetime (NameFilter | NameRangeFilter)? ItemRef?)? %RetElements
VehicleAddRq = VehicleAdd %RetElements
VehicleModRq = VehicleMod %RetElements
VehicleQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
UnitOfMeasureSetAddRq = UnitOfMeasureSetAdd %RetElements
UnitOfMeasureSetQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
WorkersCompCodeAddRq = WorkersCompCodeAdd %RetElements
WorkersCompCodeModRq = WorkersCompCodeMod %RetElements
WorkersCompCodeQueryRq = @metaData? (%ListKeys | %ListFilters FromEffectiveDate?:date
    ToEffectiveDate?:date)? %RetElements
Form1099CategoryAccountMappingModRq = Form1099CategoryAccountMappingMod
Form1099CategoryAccountMappingQueryRq = MappingCategory*:&MappingCategories
SalesTaxReturnQueryRq = @metaData?
SalesTaxReturnLineQueryRq = @metaData? TaxAgencyVendorRef+
CurrencyAddRq = CurrencyAdd %RetElements
CurrencyModRq = CurrencyMod %RetElements
CurrencyQueryRq = @metaData? (%ListKeys | %ListFilters)? %RetElements
PayrollLastPeriodQueryRq =
InventorySiteAddRq = InventorySiteAdd %RetElements
InventorySiteModRq = InventorySiteMod %RetElements
InventorySiteQueryRq = @metaData? (%ListKeys | ActiveStatus?:&ActiveStatuses
    FromModifiedDate?:datetime ToModifiedDate?:datetime (NameFilter | NameRangeFilter)?)?
    %RetElements
InvoiceAddRq = InvoiceAdd %RetElements
InvoiceModRq = InvoiceMod %RetElements
InvoiceQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter? PaidStatus?:=All|PaidOnly|NotPaidOnly)?
    IncludeLineItems?:bool IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
EstimateAddRq = EstimateAdd %RetElements
EstimateModRq = EstimateMod %RetElements
EstimateQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
SalesOrderAddRq = SalesOrderAdd %RetElements
SalesOrderModRq = SalesOrderMod %RetElements
SalesOrderQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool IncludeLinkedTxns?:bool
    %RetElements OwnerID*:guid^2.0
SalesReceiptAddRq = SalesReceiptAdd %RetElements
SalesReceiptModRq = SalesReceiptMod %RetElements
SalesReceiptQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool %RetElements
    OwnerID*:guid^2.0
CreditMemoAddRq = CreditMemoAdd %RetElements
CreditMemoModRq = CreditMemoMod %RetElements
CreditMemoQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
ReceivePaymentAddRq = ReceivePaymentAdd %RetElements
ReceivePaymentModRq = ReceivePaymentMod %RetElements
ReceivePaymentQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool %RetElements
    OwnerID*:guid^2.0
ReceivePaymentToDepositQueryRq = @metaData? %RetElements
ChargeAddRq = ChargeAdd %RetElements
ChargeModRq = ChargeMod %RetElements
ChargeQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters PaidStatus?:=All|PaidOnly|NotPaidOnly)?
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
PurchaseOrderAddRq = PurchaseOrderAdd %RetElements
PurchaseOrderModRq = PurchaseOrderMod %RetElements
PurchaseOrderQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
BillAddRq = BillAdd %RetElements
BillModRq = BillMod %RetElements
BillQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter? PaidStatus?:=All|PaidOnly|NotPaidOnly)?
    IncludeLineItems?:bool IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
ItemReceiptAddRq = ItemReceiptAdd %RetElements
ItemReceiptModRq = ItemReceiptMod %RetElements
ItemReceiptQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
VendorCreditAddRq = VendorCreditAdd %RetElements
VendorCreditModRq = VendorCreditMod %RetElements
VendorCreditQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
BillPaymentCheckAddRq = BillPaymentCheckAdd %RetElements
BillPaymentCheckModRq = BillPaymentCheckMod %RetElements
BillPaymentCheckQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool %RetElements
    OwnerID*:guid^2.0
BillPaymentCreditCardAddRq = BillPaymentCreditCardAdd %RetElements
BillPaymentCreditCardQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters
    EntityFilter? AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    %RetElements OwnerID*:guid^2.0
BillToPayQueryRq = @metaData? PayeeEntityRef APAccountRef? DueDate?:date CurrencyFilter?
    %RetElements
SalesTaxPaymentCheckAddRq = SalesTaxPaymentCheckAdd %RetElements
SalesTaxPaymentCheckModRq = SalesTaxPaymentCheckMod %RetElements
SalesTaxPaymentCheckQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters
    EntityFilter? AccountFilter? ItemFilter? %RefNumberFilters)? IncludeLineItems?:bool
    %RetElements OwnerID*:guid^2.0
SalesTaxPayableQueryRq = @metaData? AsOfDate?:date %RetElements
InventoryAdjustmentAddRq = InventoryAdjustmentAdd %RetElements
InventoryAdjustmentModRq = InventoryAdjustmentMod %RetElements
InventoryAdjustmentQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters
    EntityFilter? AccountFilter? ItemFilter? %RefNumberFilters)? IncludeLineItems?:bool
    %RetElements OwnerID*:guid^2.0
TimeTrackingAddRq = TimeTrackingAdd %RetElements
TimeTrackingModRq = TimeTrackingMod %RetElements
TimeTrackingQueryRq = @metaData? @iterator? @iteratorID? (TxnID+:id | %TxnFilters
    TimeTrackingEntityFilter?)? %RetElements
CheckAddRq = CheckAdd %RetElements
CheckModRq = CheckMod %RetElements
CheckQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    IncludeLinkedTxns?:bool %RetElements OwnerID*:guid^2.0
CreditCardChargeAddRq = CreditCardChargeAdd %RetElements
CreditCardChargeModRq = CreditCardChargeMod %RetElements
CreditCardChargeQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool %RetElements
    OwnerID*:guid^2.0
CreditCardCreditAddRq = CreditCardCreditAdd %RetElements
CreditCardCreditModRq = CreditCardCreditMod %RetElements
CreditCardCreditQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool %RetElements
    OwnerID*:guid^2.0
JournalEntryAddRq = JournalEntryAdd %RetElements
JournalEntryModRq = JournalEntryMod %RetElements
JournalEntryQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters EntityFilter?
    AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool %RetElements
    OwnerID*:guid^2.0
DepositAddRq = DepositAdd %RetElements
DepositModRq = DepositMod %RetElements
DepositQueryRq = @metaData? @iterator? @iteratorID? (TxnID+:id | %TxnFilters EntityFilter?
    AccountFilter? CurrencyFilter?)? IncludeLineItems?:bool %RetElements OwnerID*:guid^2.0
ListDelRq = ListDelType:&DeletedLists ListID:id
ListMergeRq = ListMergeType:&MergedLists MergeFrom MergeTo SameShipAddrOk?:bool
ListDeletedQueryRq = @metaData? ListDelType+:&DeletedLists DeletedDateRangeFilter? %RetElements
TxnDelRq = TxnDelType:&DeletedTxns TxnID:id
TxnVoidRq = TxnVoidType:&VoidedTxns TxnID:id
TxnDeletedQueryRq = @metaData? TxnDelType+:&DeletedTxns DeletedDateRangeFilter? %RetElements
ClearedStatusModRq = ClearedStatusMod
ListDisplayAddRq = ListDisplayAddType:&DisplayedLists
ListDisplayModRq = ListDisplayModType:&DisplayedLists ListID:id
TxnDisplayAddRq = TxnDisplayAddType:&ShownNewTxns EntityRef?
TxnDisplayModRq = TxnDisplayModType:&ShownTxns TxnID:id
DataEventRecoveryInfoDelRq = SubscriberID:guid
DataEventRecoveryInfoQueryRq = SubscriberID:guid
TransactionQueryRq = @metaData? @iterator? @iteratorID? (TxnID+:id | MaxReturned?:count
    (RefNumber+:str | RefNumberCaseSensitive+:str | RefNumberFilter | RefNumberRangeFilter)?
    TransactionModifiedDateRangeFilter? TransactionDateRangeFilter? TransactionEntityFilter?
    TransactionAccountFilter? TransactionItemFilter? TransactionClassFilter?
    TransactionTypeFilter? TransactionDetailLevelFilter?:=All|SummaryOnly|AllExceptSummary
    TransactionPostingStatusFilter?:=Either|NonPosting|Posting
    TransactionPaidStatusFilter?:=Either|Closed|Open CurrencyFilter?)? %RetElements
BuildAssemblyAddRq = BuildAssemblyAdd %RetElements
BuildAssemblyModRq = BuildAssemblyMod %RetElements
BuildAssemblyQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters ItemFilter?
    %RefNumberFilters PendingStatus?:=All|PendingOnly|NotPendingOnly)?
    IncludeComponentLineItems?:bool %RetElements OwnerID*:guid^2.0
ItemAssembliesCanBuildQueryRq = ItemInventoryAssemblyRef TxnDate:date
ARRefundCreditCardAddRq = ARRefundCreditCardAdd %RetElements
ARRefundCreditCardQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters
    EntityFilter? AccountFilter? %RefNumberFilters CurrencyFilter?)? IncludeLineItems?:bool
    %RetElements OwnerID*:guid^2.0
VehicleMileageAddRq = VehicleMileageAdd %RetElements
VehicleMileageQueryRq = @metaData? @iterator? @iteratorID? (TxnID+:id | %TxnFilters)? %RetElements
TransferInventoryAddRq = TransferInventoryAdd %RetElements
TransferInventoryModRq = TransferInventoryMod %RetElements
TransferInventoryQueryRq = @metaData? @iterator? @iteratorID? (%TxnKeys | %TxnFilters
    EntityFilter? AccountFilter? %RefNumberFilters | SiteFilter?)? IncludeLineItems?:bool
    IncludeRetElement*:str^4.0
ItemSitesQueryRq = @metaData? @iterator? @iteratorID? (ListID*:id | (ItemTypeFilter?:&ItemTypes |
    ItemSiteFilter?))? MaxReturned?:count ActiveStatus?:&ActiveStatuses IncludeRetElement*:str^4.0
BarCodeQueryRq = @metaData? @iterator? @iteratorID? BarCodeValue*:str50^12.0
TransferAddRq = TransferAdd %RetElements
TransferModRq = TransferMod %RetElements
TransferQueryRq = @metaData? @iterator? @iteratorID? (TxnID+:id | %TxnFilters)? %RetElements
GeneralSummaryReportQueryRq = GeneralSummaryReportType:&GeneralSummaryReports DisplayReport?:bool
    %ReportDates %ReportScope ReportTxnTypeFilter? %ReportModified %ReportLevel
    SummarizeColumnsBy?:&ColumnsBy IncludeSubcolumns?:bool %ReportRows
    ReportBasis?:=Accrual|Cash|None
JobReportQueryRq = JobReportType:&JobReports DisplayReport?:bool %ReportDates %ReportScope
    ReportTxnTypeFilter? %ReportModified %ReportLevel SummarizeColumnsBy?:&ColumnsBy
    IncludeSubcolumns?:bool
TimeReportQueryRq = TimeReportType:=TimeByItem|TimeByJobDetail|TimeByJobSummary|TimeByName
    DisplayReport?:bool %ReportDates ReportEntityFilter? ReportItemFilter? ReportClassFilter?
    SummarizeColumnsBy?:&ColumnsBy IncludeColumn*:&Columns IncludeSubcolumns?:bool %ReportRows
AgingReportQueryRq = AgingReportType:&AgingReports DisplayReport?:bool %ReportDates %ReportScope
    ReportTxnTypeFilter? %ReportModified %ReportLevel IncludeColumn*:&Columns
    IncludeAccounts?:=All|InUse ReportAgingAsOf?:=ReportEndDate|Today
BudgetSummaryReportQueryRq = BudgetSummaryReportType:&BudgetReports DisplayReport?:bool
    FiscalYear:int BudgetCriterion?:=Accounts|AccountsAndClasses|AccountsAndCustomers %ReportDates
    ReportClassFilter? SummarizeBudgetColumnsBy?:=Class|Customer|Date
    SummarizeBudgetRowsBy?:=Account|Class|Customer
GeneralDetailReportQueryRq = GeneralDetailReportType:&GeneralDetailReports DisplayReport?:bool
    %ReportDates %ReportScope ReportTxnTypeFilter? %ReportModified %ReportLevel
    SummarizeRowsBy?:&RowsBy IncludeColumn*:&Columns IncludeAccounts?:=All|InUse
    ReportOpenBalanceAsOf?:=ReportEndDate|Today ReportBasis?:=Accrual|Cash|None
CustomDetailReportQueryRq = CustomDetailReportType:=CustomTxnDetail DisplayReport?:bool
    %ReportDates %ReportScope ReportTxnTypeFilter? %ReportModified %ReportLevel
    SummarizeRowsBy:&RowsBy IncludeColumn+:&Columns IncludeAccounts?:=All|InUse
    ReportOpenBalanceAsOf?:=ReportEndDate|Today ReportBasis?:=Accrual|Cash|None
CustomSummaryReportQueryRq = CustomSummaryReportType:=CustomSummary DisplayReport?:bool
    %ReportDates %ReportScope ReportTxnTypeFilter? %ReportModified %ReportLevel
    SummarizeColumnsBy:&ColumnsBy SummarizeRowsBy:&RowsBy IncludeSubcolumns?:bool %ReportRows
    ReportBasis?:=Accrual|Cash|None
PayrollDetailReportQueryRq = PayrollDetailReportType:&PayrollDetailReports DisplayReport?:bool
    %ReportDates %ReportScope %ReportModified %ReportLevel SummarizeRowsBy?:&RowsBy
    IncludeColumn*:&Columns IncludeAccounts?:=All|InUse
    ReportOpenBalanceAsOf?:=ReportEndDate|Today
PayrollSummaryReportQueryRq = PayrollSummaryReportType:&PayrollSummaryReports DisplayReport?:bool
    %ReportDates %ReportScope %ReportModified %ReportLevel SummarizeColumnsBy?:&ColumnsBy
    IncludeSubcolumns?:bool %ReportRows
DataExtDefAddRq = DataExtDefAdd %RetElements
DataExtDefModRq = DataExtDefMod %RetElements
DataExtDefDelRq = OwnerID:guid^2.0 DataExtName:str31
DataExtDefQueryRq = @metaData? (OwnerID*:guid^2.0 | AssignToObject*:&ExtendedObjects)?
    %RetElements
DataExtAddRq = DataExtAdd
DataExtModRq = DataExtMod
DataExtDelRq = DataExtDel
)grammar";
}

}  // namespace ostrel::simulator
