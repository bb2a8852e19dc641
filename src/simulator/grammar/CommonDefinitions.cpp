// Words, references, addresses, and other parts that messages share, in the notation of
// Definitions.h. From public facts on qbXML 13.0.
#include "simulator/grammar/Definitions.h"

namespace ostrel::simulator {

std::string_view CommonDefinitions() {
  return R"grammar(
&AccountFilterTypes = AccountsPayable AccountsReceivable AllowedFor1099 APAndSalesTax
    APOrCreditCard ARAndAP Asset BalanceSheet Bank BankAndARAndAPAndUF BankAndUF CostOfSales
    CreditCard CurrentAsset CurrentAssetAndExpense CurrentLiability Equity
    EquityAndIncomeAndExpense ExpenseAndOtherExpense FixedAsset IncomeAndExpense
    IncomeAndOtherIncome Liability LiabilityAndEquity LongTermLiability NonPosting OrdinaryExpense
    OrdinaryIncome OrdinaryIncomeAndCOGS OrdinaryIncomeAndExpense OtherAsset OtherCurrentAsset
    OtherCurrentLiability OtherExpense OtherIncome OtherIncomeOrExpense
&AccountTypes = AccountsPayable AccountsReceivable Bank CostOfGoodsSold CreditCard Equity Expense
    FixedAsset Income LongTermLiability NonPosting OtherAsset OtherCurrentAsset
    OtherCurrentLiability OtherExpense OtherIncome
&AccrualPeriods = BeginningOfYear EveryHourOnPaycheck EveryPaycheck
&ActiveStatuses = ActiveOnly InactiveOnly All
&AgingReports = APAgingDetail APAgingSummary ARAgingDetail ARAgingSummary CollectionsReport
&BarCodedLists = Account Class Customer CustomerMsg CustomerType DateDrivenTerms Employee
    ItemDiscount ItemFixedAsset ItemGroup ItemInventory ItemInventoryAssembly ItemNonInventory
    ItemOtherCharge ItemPayment ItemSalesTax ItemSalesTaxGroup ItemService ItemSubtotal JobType
    OtherName PaymentMethod PriceLevel SalesRep SalesTaxCode ShipMethod StandardTerms ToDo Vendor
    VendorType
&BillableStatuses = Billable NotBillable HasBeenBilled
&BudgetReports = BalanceSheetBudgetOverview BalanceSheetBudgetVsActual ProfitAndLossBudgetOverview
    ProfitAndLossBudgetPerformance ProfitAndLossBudgetVsActual
&Columns = Account Aging Amount AmountDifference AverageCost BilledDate BillingStatus
    CalculatedAmount Class ClearedStatus CostPrice Credit Currency Date Debit DeliveryDate DueDate
    EstimateActive ExchangeRate FOB IncomeSubjectToTax Invoiced Item ItemDesc LastModifiedBy
    LatestOrPriorState Memo ModifiedTime Name NameAccountNumber NameAddress NameCity NameContact
    NameEmail NameFax NamePhone NameState NameZip OpenBalance OriginalAmount PaidAmount PaidStatus
    PaidThroughDate PaymentMethod PayrollItem PONumber PrintStatus ProgressAmount ProgressPercent
    Quantity QuantityAvailable QuantityOnHand QuantityOnSalesOrder ReceivedQuantity RefNumber
    RunningBalance SalesRep SalesTaxCode SerialOrLotNumber ShipDate ShipMethod SourceName
    SplitAccount SSNOrTaxID TaxLine TaxTableVersion Terms TxnID TxnNumber TxnType UnitPrice
    UserEdit ValueOnHand WageBase WageBaseTips
&ColumnsBy = Account BalanceSheet Class Customer CustomerType Day Employee FourWeek HalfMonth
    IncomeStatement ItemDetail ItemType Month Payee PaymentMethod PayrollItemDetail
    PayrollYtdDetail Quarter SalesRep SalesTaxCode ShipMethod Terms TotalOnly TwoWeek Vendor
    VendorType Week Year
&CreditCardTxnTypes = Authorization Capture Charge Refund VoiceAuthorization
&DataExtTypes = AMTTYPE DATETIMETYPE INTTYPE PERCENTTYPE PRICETYPE QUANTYPE STR1024TYPE STR255TYPE
&DateMacros = All Today ThisWeek ThisWeekToDate ThisMonth ThisMonthToDate ThisCalendarQuarter
    ThisCalendarQuarterToDate ThisFiscalQuarter ThisFiscalQuarterToDate ThisCalendarYear
    ThisCalendarYearToDate ThisFiscalYear ThisFiscalYearToDate Yesterday LastWeek LastWeekToDate
    LastMonth LastMonthToDate LastCalendarQuarter LastCalendarQuarterToDate LastFiscalQuarter
    LastFiscalQuarterToDate LastCalendarYear LastCalendarYearToDate LastFiscalYear
    LastFiscalYearToDate NextWeek NextFourWeeks NextMonth NextCalendarQuarter NextCalendarYear
    NextFiscalQuarter NextFiscalYear
&DeletedLists = Account BillingRate Class Currency Customer CustomerMsg CustomerType
    DateDrivenTerms Employee InventorySite ItemDiscount ItemFixedAsset ItemGroup ItemInventory
    ItemInventoryAssembly ItemNonInventory ItemOtherCharge ItemPayment ItemSalesTax
    ItemSalesTaxGroup ItemService ItemSubtotal JobType OtherName PaymentMethod PayrollItemNonWage
    PayrollItemWage PriceLevel SalesRep SalesTaxCode ShipMethod StandardTerms ToDo
    UnitOfMeasureSet Vehicle Vendor VendorType WorkersCompCode
&DeletedTxns = ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard BuildAssembly Charge
    Check CreditCardCharge CreditCardCredit CreditMemo Deposit Estimate InventoryAdjustment
    Invoice ItemReceipt JournalEntry PurchaseOrder ReceivePayment SalesOrder SalesReceipt
    SalesTaxPaymentCheck TimeTracking TransferInventory VehicleMileage VendorCredit
&DeliveryPolicys = DeliverAlways DeliverOnlyIfRunning
&DetailAccountTypes = AP AR AccumulatedAdjustment AccumulatedAmortization
    AccumulatedAmortizationOfOtherAssets AccumulatedDepletion AccumulatedDepreciation
    AdvertisingOrPromotional AllowanceForBadDebts Amortization Auto BadDebts BankCharges Buildings
    CashOnHand CharitableContributions Checking CommonStock CostOfLabor CostOfLaborCOS CreditCard
    DepletableAssets Depreciation DevelopmentCosts DiscountsOrRefundsGiven DividendIncome
    DuesAndSubscriptions EmployeeCashAdvances Entertainment EntertainmentMeals EquipmentRental
    EquipmentRentalCOS FederalIncomeTaxPayable FurnitureAndFixtures Goodwill Insurance
    InsurancePayable IntangibleAssets InterestEarned InterestPaid Inventory
    InvestmentMortgageOrRealEstateLoans InvestmentOther InvestmentTaxExemptSecurities
    InvestmentUSGovObligations Land LeaseBuyout LeaseholdImprovements LegalAndProfessionalFees
    Licenses LineOfCredit LoanPayable LoansToOfficers LoansToOthers LoansToStockholders
    MachineryAndEquipment MoneyMarket NonProfitIncome NotesPayable
    OfficeOrGeneralAdministrativeExpenses OpeningBalanceEquity OrganizationalCosts
    OtherCostsOfServiceCOS OtherCurrentAssets OtherCurrentLiab OtherFixedAssets
    OtherInvestmentIncome OtherLongTermAssets OtherLongTermLiab OtherMiscExpense OtherMiscIncome
    OtherMiscServiceCost OtherPrimaryIncome OwnersEquity PaidInCapitalOrSurplus
    PartnerContributions PartnerDistributions PartnersEquity PayrollClearing PayrollExpenses
    PayrollTaxPayable PenaltiesAndSettlements PreferredStock PrepaidExpenses
    PrepaidExpensesPayable PromotionalMeals RentOrLeaseOfBuildings RentsHeldInTrust
    RentsInTrustLiab RepairAndMaintenance Retainage RetainedEarnings SalesOfProductIncome
    SalesTaxPayable Savings SecurityDeposits ServiceOrFeeIncome ShareholderNotesPayable
    ShippingFreightAndDelivery ShippingFreightAndDeliveryCOS StateOrLocalIncomeTaxPayable
    SuppliesAndMaterials SuppliesAndMaterialsCOGS TaxExemptInterest TaxesPaid Travel TravelMeals
    TreasuryStock TrustAccounts TrustAccountsLiab UndepositedFunds Utilities Vehicles
&DisplayedLists = Account Customer Employee Item OtherName Vendor
&EmployeeTypes = Officer Owner Regular Statutory
&EntityTypeFilters = Customer Employee OtherName Vendor
&Ethnicities = AmericianIndian Asian Black Hawaiian Hispanic White TwoOrMoreRaces
&ExtendedObjects = Account ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard
    BuildAssembly Charge Check Company CreditCardCharge CreditCardCredit CreditMemo Customer
    Deposit Employee Estimate InventoryAdjustment Invoice Item ItemReceipt JournalEntry OtherName
    PurchaseOrder ReceivePayment SalesOrder SalesReceipt SalesTaxPaymentCheck Vendor VendorCredit
&ExtendedTxns = ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard BuildAssembly
    Charge Check CreditCardCharge CreditCardCredit CreditMemo Deposit Estimate InventoryAdjustment
    Invoice ItemReceipt JournalEntry PurchaseOrder ReceivePayment SalesOrder SalesReceipt
    SalesTaxPaymentCheck VendorCredit
&GeneralDetailReports = 1099Detail AuditTrail BalanceSheetDetail CheckDetail CustomerBalanceDetail
    DepositDetail EstimatesByJob ExpenseByVendorDetail GeneralLedger IncomeByCustomerDetail
    IncomeTaxDetail InventoryValuationDetail JobProgressInvoicesVsEstimates Journal MissingChecks
    OpenInvoices OpenPOs OpenPOsByJob OpenSalesOrderByCustomer OpenSalesOrderByItem PendingSales
    ProfitAndLossDetail PurchaseByItemDetail PurchaseByVendorDetail SalesByCustomerDetail
    SalesByItemDetail SalesByRepDetail TxnDetailByAccount TxnListByCustomer TxnListByDate
    TxnListByVendor UnpaidBillsDetail UnbilledCostsByJob VendorBalanceDetail
&GeneralSummaryReports = BalanceSheetByClass BalanceSheetPrevYearComp BalanceSheetStandard
    BalanceSheetSummary CustomerBalanceSummary ExpenseByVendorSummary IncomeByCustomerSummary
    InventoryStockStatusByItem InventoryStockStatusByVendor IncomeTaxSummary
    InventoryValuationSummary InventoryValuationSummaryBySite LotNumberInStockBySite
    PhysicalInventoryWorksheet ProfitAndLossByClass ProfitAndLossByJob ProfitAndLossPrevYearComp
    ProfitAndLossStandard ProfitAndLossYTDComp PurchaseByItemSummary PurchaseByVendorSummary
    SalesByCustomerSummary SalesByItemSummary SalesByRepSummary SalesTaxLiability
    SalesTaxRevenueSummary SerialNumberInStockBySite TrialBalance VendorBalanceSummary
&ItemTypes = AllExceptFixedAsset Assembly Discount FixedAsset Inventory InventoryAndAssembly
    NonInventory OtherCharge Payment Sales SalesTax Service
&JobReports = ItemEstimatesVsActuals ItemProfitability JobEstimatesVsActualsDetail
    JobEstimatesVsActualsSummary JobProfitabilityDetail JobProfitabilitySummary
&JobStatuses = Awarded Closed InProgress None NotAwarded Pending
&MappingCategories = BOX1 BOX2 BOX3 BOX4 BOX5 BOX6 BOX7 BOX8 BOX9 BOX10 BOX13 BOX14
&MatchCriteria = StartsWith Contains EndsWith
&MergedLists = Account Class Customer ItemDiscount ItemGroup ItemInventory ItemNonInventory
    ItemOtherCharge ItemPayment ItemSalesTax ItemSalesTaxGroup ItemService ItemSubtotal Vendor
&Months = January February March April May June July August September October November December
&PayPeriods = Daily Weekly Biweekly Semimonthly Monthly Quarterly Yearly
&PaymentMethodTypes = AmericanExpress Cash Check DebitCard Discover ECheck GiftCard MasterCard
    Other OtherCreditCard Visa
&PayrollDetailReports = EmployeeStateTaxesDetail PayrollItemDetail PayrollReviewDetail
    PayrollTransactionDetail PayrollTransactionsByPayee
&PayrollSummaryReports = EmployeeEarningsSummary PayrollLiabilityBalances PayrollSummary
&Relations = Spouse Partner Mother Father Sister Brother Son Daughter Friend Other
&ReportCalendars = CalendarYear FiscalYear TaxYear
&ReportDateMacros = All Today ThisWeek ThisWeekToDate ThisMonth ThisMonthToDate ThisQuarter
    ThisQuarterToDate ThisYear ThisYearToDate Yesterday LastWeek LastWeekToDate LastMonth
    LastMonthToDate LastQuarter LastQuarterToDate LastYear LastYearToDate NextWeek NextFourWeeks
    NextMonth NextQuarter NextYear
&ReportDetailLevelFilters = All AllExceptSummary SummaryOnly
&RowsBy = Account BalanceSheet Class Customer CustomerType Day Employee FourWeek HalfMonth
    IncomeStatement ItemDetail ItemType Month Payee PaymentMethod PayrollItemDetail
    PayrollYtdDetail Quarter SalesRep SalesTaxCode ShipMethod TaxLine Terms TotalOnly TwoWeek
    Vendor VendorType Week Year
&ShownNewTxns = Bill BillPayment BuildAssembly Charge Check CreditCardCharge CreditCardCredit
    CreditMemo Deposit Estimate InventoryAdjustment Invoice ItemReceipt JournalEntry PurchaseOrder
    ReceivePayment SalesOrder SalesReceipt SalesTaxPaymentCheck VendorCredit
&ShownTxns = Bill BillPaymentCheck BillPaymentCreditCard BuildAssembly Charge Check
    CreditCardCharge CreditCardCredit CreditMemo Deposit Estimate InventoryAdjustment Invoice
    ItemReceipt JournalEntry PurchaseOrder ReceivePayment SalesOrder SalesReceipt
    SalesTaxPaymentCheck VendorCredit
&SpecialAccounts = AccountsPayable AccountsReceivable CondenseItemAdjustmentExpenses
    CostOfGoodsSold DirectDepositLiabilities Estimates ExchangeGainLoss InventoryAssets
    ItemReceiptAccount OpeningBalanceEquity PayrollExpenses PayrollLiabilities PettyCash
    PurchaseOrders ReconciliationDifferences RetainedEarnings SalesOrders SalesTaxPayable
    UncategorizedExpenses UncategorizedIncome UndepositedFunds
&SpecialItems = FinanceCharge ReimbursableExpenseGroup ReimbursableExpenseSubtotal
&TaxForms = Form1040 Form1065 Form1120 Form1120S Form990 Form990PF Form990T OtherOrNone
&TaxLineTypes = ECPurchases ECSales Purchases Sales SubTotal TaxOnPurchases TaxOnSales Total
&TemplateTypes = BuildAssembly CreditMemo Estimate Invoice PurchaseOrder SalesOrder SalesReceipt
&TxnEventTypes = ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard Charge Check
    CreditCardCharge CreditCardCredit CreditMemo Deposit Estimate InventoryAdjustment Invoice
    ItemReceipt JournalEntry PurchaseOrder ReceivePayment SalesOrder SalesReceipt
    SalesTaxPaymentCheck TimeTracking VendorCredit
&TxnFilterTypes = All ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard BuildAssembly
    Charge Check CreditCardCharge CreditCardCredit CreditMemo Deposit Estimate InventoryAdjustment
    Invoice ItemReceipt JournalEntry LiabilityAdjustment Paycheck PayrollLiabilityCheck
    PurchaseOrder ReceivePayment SalesOrder SalesReceipt SalesTaxPaymentCheck Transfer
    VendorCredit YTDAdjustment
&TxnTypes = ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard BuildAssembly Charge
    Check CreditCardCharge CreditCardCredit CreditMemo Deposit Estimate InventoryAdjustment
    Invoice ItemReceipt JournalEntry LiabilityAdjustment Paycheck PayrollLiabilityCheck
    PurchaseOrder ReceivePayment SalesOrder SalesReceipt SalesTaxPaymentCheck Transfer
    VendorCredit YTDAdjustment
&Types = Task Call Fax Email Meeting Appointment
&UnitOfMeasureTypes = Area Count Length Other Time Volume Weight
&UseTimeDataToCreatePaycheckses = NotSet UseTimeData DoNotUseTimeData
&VisibleIfs = AccountantCopyExists AssemblyItemsEnabled ClassesEnabled EstimatesEnabled
    HasCustomers HasVendors InventoryEnabled IsAccountantCopy MultiUserMode PayrollEnabled
    PriceLevelsEnabled SalesOrdersEnabled SalesTaxEnabled TimeTrackingEnabled
&VoidedTxns = ARRefundCreditCard Bill BillPaymentCheck BillPaymentCreditCard Charge Check
    CreditCardCharge CreditCardCredit CreditMemo Deposit InventoryAdjustment Invoice ItemReceipt
    JournalEntry SalesReceipt VendorCredit
&WageTypes = Bonus Commission HourlyOvertime HourlyRegular HourlySick HourlyVacation SalaryRegular
    SalarySick SalaryVacation

%ListHead = ListID?:id TimeCreated?:datetime TimeModified?:datetime EditSequence?:str16
%TxnHead = TxnID?:id TimeCreated?:datetime TimeModified?:datetime EditSequence?:str16
    TxnNumber?:int
%ListChange = ListID:id EditSequence:str16
%TxnChange = TxnID:id EditSequence:str16
%PersonName = Salutation?:str15 FirstName?:str25 MiddleName?:str5 LastName?:str25
%Phones = Phone?:str21 Mobile?:str21 Pager?:str21 AltPhone?:str21 Fax?:str21 Email?:str1023
    Cc?:str1023^12.0 Contact?:str41 AltContact?:str41
%AddressLines = Addr1?:str41 Addr2?:str41 Addr3?:str41 Addr4?:str41 Addr5?:str41
%Address = %AddressLines City?:str31 State?:str21 PostalCode?:str13 Country?:str31 Note?:str41
%Tracking = (SerialNumber?:str4095^11.0 | LotNumber?:str40^11.0)?
%ListKeys = ListID+:id | FullName+:str
%ListFilters = MaxReturned?:count ActiveStatus?:&ActiveStatuses FromModifiedDate?:datetime
    ToModifiedDate?:datetime (NameFilter | NameRangeFilter)?
%TxnKeys = TxnID+:id | RefNumber+:str | RefNumberCaseSensitive+:str
%TxnFilters = MaxReturned?:count (ModifiedDateRangeFilter | TxnDateRangeFilter)?
%RefNumberFilters = (RefNumberFilter | RefNumberRangeFilter)?
%RetElements = IncludeRetElement*:str50^4.0
%ReportDates = (ReportPeriod | ReportDateMacro:&ReportDateMacros)?
%ReportModified = (ReportModifiedDateRangeFilter |
    ReportModifiedDateRangeMacro:&ReportDateMacros)?
%ReportScope = ReportAccountFilter? ReportEntityFilter? ReportItemFilter? ReportClassFilter?
%ReportLevel = ReportDetailLevelFilter?:&ReportDetailLevelFilters
    ReportPostingStatusFilter?:=Either|NonPosting|Posting
%ReportRows = ReportCalendar?:&ReportCalendars ReturnRows?:=ActiveOnly|NonZero|All
    ReturnColumns?:=ActiveOnly|NonZero|All
%Ref3 = ListID?:id FullName?:str3
%Ref5 = ListID?:id FullName?:str5
%Ref15 = ListID?:id FullName?:str15
%Ref31 = ListID?:id FullName?:str31
%Ref41 = ListID?:id FullName?:str41
%Ref64 = ListID?:id FullName?:str64
%Ref101 = ListID?:id FullName?:str101
%Ref159 = ListID?:id FullName?:str159
%Ref209 = ListID?:id FullName?:str209
%Ref = ListID?:id FullName?:str

ListObjRef = %Ref159
ParentRef = %Ref
LeadRef = %Ref209
SupervisorRef = %Ref209
CustomerRef = %Ref209
VendorRef = %Ref41
ClassRef = %Ref159
OverrideClassRef = %Ref159
DiscountClassRef = %Ref159
TermsRef = %Ref31
SalesRepRef = %Ref5
CustomerMsgRef = %Ref101
ItemRef = %Ref
ItemGroupRef = %Ref31
ItemSalesTaxRef = %Ref31
DefaultItemSalesTaxRef = %Ref31
ItemInventoryRef = %Ref159
AccountRef = %Ref159
ARAccountRef = %Ref159
APAccountRef = %Ref159
ExpenseAccountRef = %Ref159
LiabilityAccountRef = %Ref159
PrefVendorRef = %Ref41
IncomeAccountRef = %Ref159
COGSAccountRef = %Ref159
AssetAccountRef = %Ref159
DiscountAccountRef = %Ref159
DefaultDiscountAccountRef = %Ref159
DepositToAccountRef = %Ref159
RefundFromAccountRef = %Ref159
FinanceChargeAccountRef = %Ref159
BankAccountRef = %Ref159
CreditCardAccountRef = %Ref159
OverrideItemAccountRef = %Ref159
TransferFromAccountRef = %Ref159
TransferToAccountRef = %Ref159
TaxVendorRef = %Ref41
EntityRef = %Ref209
EmployeeRef = %Ref31
ShipToEntityRef = %Ref209
PayeeEntityRef = %Ref209
SalesRepEntityRef = %Ref41
ItemServiceRef = %Ref159
PaymentMethodRef = %Ref31
PreferredPaymentMethodRef = %Ref31
ShipMethodRef = %Ref15
DefaultShipMethodRef = %Ref15
CustomerTypeRef = %Ref159
VendorTypeRef = %Ref159
JobTypeRef = %Ref159
SalesTaxCodeRef = %Ref3
DefaultTaxableSalesTaxCodeRef = %Ref3
DefaultNonTaxableSalesTaxCodeRef = %Ref3
CustomerSalesTaxCodeRef = %Ref3
VehicleRef = %Ref31
PayrollItemWageRef = %Ref31
TemplateRef = %Ref31
PriceLevelRef = %Ref31
BillingRateRef = %Ref31
ItemInventoryAssemblyRef = %Ref159
ItemPurchaseTaxRef = %Ref31
PurchaseTaxCodeRef = %Ref3
UnitOfMeasureSetRef = %Ref31
OverrideUOMSetRef = %Ref31
PrefillAccountRef = %Ref159
SalesTaxReturnRef = %Ref
TaxOnPurchasesAccountRef = %Ref159
TaxOnSalesAccountRef = %Ref159
TaxAgencyVendorRef = %Ref41
SalesTaxReturnLineRef = %Ref
CurrencyRef = %Ref64
HomeCurrencyRef = %Ref64
InventorySiteRef = %Ref31
FromInventorySiteRef = %Ref31
ToInventorySiteRef = %Ref31
InventorySiteLocationRef = %Ref31
FromInventorySiteLocationRef = %Ref31
ToInventorySiteLocationRef = %Ref31
ParentSiteRef = %Ref31
Address = %Address
LeadAddress = %AddressLines
AddressBlock = %AddressLines
ShipAddress = %Address
ShipAddressBlock = %AddressLines
LegalAddress = %Address
BillAddress = %Address
BillAddressBlock = %AddressLines
VendorAddress = %Address
VendorAddressBlock = %AddressLines
OtherNameAddress = %Address
OtherNameAddressBlock = %AddressLines
CompanyAddressForCustomer = %Address
CompanyAddressBlockForCustomer = %AddressLines
EmployeeAddress = Addr1?:str41 Addr2?:str41 Addr3?:str Addr4?:str City?:str31 State?:str21
    PostalCode?:str13 Country?:str
SiteAddress = %AddressLines City?:str31 State?:str21 PostalCode?:str13 Country?:str31
SiteAddressBlock = %AddressLines
ShipToAddress = Name:str41 %Address DefaultShipTo?:bool
AdditionalContactRef = ContactName:str40 ContactValue:str255
PrimaryContact = ContactName:str40 ContactValue:str255 Relation?:&Relations
SecondaryContact = ContactName:str40 ContactValue:str255 Relation?:&Relations
EmergencyContacts = PrimaryContact? SecondaryContact?
BarCode = BarCodeValue?:str50^12.0 AssignEvenIfUsed?:bool AllowOverride?:bool
Contacts = Salutation?:str15 FirstName:str25 MiddleName?:str5 LastName?:str25 JobTitle?:str41^12.0
    AdditionalContactRef{0,5}^12.0
ContactsMod = ListID?:id EditSequence?:str16 Salutation?:str15 FirstName:str25 MiddleName?:str5
    LastName?:str25 JobTitle?:str41^12.0 AdditionalContactRef{0,5}^12.0
ContactsRet = ListID?:id TimeCreated:datetime TimeModified:datetime EditSequence?:str16
    Contact?:str41 Salutation?:str15 FirstName:str25 MiddleName?:str5 LastName?:str25
    JobTitle?:str41^12.0 AdditionalContactRef{0,5}^12.0
LeadContactsRet = LeadContactID?:int Salutation?:str15 FirstName:str25 MiddleName?:str5
    LastName?:str25 JobTitle?:str41^12.0 AdditionalContactRef{0,5}^12.0 IsPrimaryContact?:bool
LeadContactsMod = LeadContactID?:int Salutation?:str15 FirstName:str25 MiddleName?:str5
    LastName?:str25 JobTitle?:str41^12.0 AdditionalContactRef{0,5}^12.0 IsPrimaryContact?:bool
LeadContacts = Salutation?:str15 FirstName:str25 MiddleName?:str5 LastName?:str25
    JobTitle?:str41^12.0 AdditionalContactRef{0,5}^12.0 IsPrimaryContact?:bool
LocationsRet = LocationID?:int MainAddress:str32 Location:str32 LeadAddress?
LocationsMod = LocationID:int Location:str32 LeadAddress?
Locations = Location:str32 LeadAddress?
AdditionalNotes = Note:str4095
AdditionalNotesMod = NoteID:int Note:str4095
AdditionalNotesRet = NoteID:int Date:date Note:str4095
CreditCardInfo = CreditCardNumber?:str25 ExpirationMonth?:int ExpirationYear?:int
    NameOnCard?:str41 CreditCardAddress?:str41 CreditCardPostalCode?:str41
CreditCardTxnInputInfo = CreditCardNumber:str25 ExpirationMonth:int ExpirationYear:int
    NameOnCard:str41 CreditCardAddress?:str41 CreditCardPostalCode?:str18
    CommercialCardCode?:str24 TransactionMode?:=CardNotPresent|CardPresent
    CreditCardTxnType?:&CreditCardTxnTypes
CreditCardTxnResultInfo = ResultCode:int ResultMessage:str60 CreditCardTransID:str24
    MerchantAccountNumber:str32 AuthorizationCode?:str12 AVSStreet?:=Pass|Fail|NotAvailable
    AVSZip?:=Pass|Fail|NotAvailable CardSecurityCodeMatch?:=Pass|Fail|NotAvailable
    ReconBatchID?:str84 PaymentGroupingCode?:int PaymentStatus:=Unknown|Completed
    TxnAuthorizationTime:datetime TxnAuthorizationStamp?:int ClientTransID?:str16
CreditCardTxnInfo = CreditCardTxnInputInfo CreditCardTxnResultInfo
CreditCardTxnInputInfoMod = CreditCardNumber?:str25 ExpirationMonth?:int ExpirationYear?:int
    NameOnCard?:str41 CreditCardAddress?:str41 CreditCardPostalCode?:str18
    CommercialCardCode?:str24 TransactionMode?:=CardNotPresent|CardPresent
    CreditCardTxnType?:&CreditCardTxnTypes
CreditCardTxnResultInfoMod = ResultCode?:int ResultMessage?:str60 CreditCardTransID?:str24
    MerchantAccountNumber?:str32 AuthorizationCode?:str12 AVSStreet?:=Pass|Fail|NotAvailable
    AVSZip?:=Pass|Fail|NotAvailable CardSecurityCodeMatch?:=Pass|Fail|NotAvailable
    ReconBatchID?:str84 PaymentGroupingCode?:int PaymentStatus?:=Unknown|Completed
    TxnAuthorizationTime?:datetime TxnAuthorizationStamp?:int ClientTransID?:str16
CreditCardTxnInfoMod = CreditCardTxnInputInfoMod? CreditCardTxnResultInfoMod?
LinkToTxn = TxnID:id TxnLineID:id
ItemSiteFilter = ItemFilter? SiteFilter?
BarCodeRet = ListType:&BarCodedLists ListID?:id FullName?:str50
TransferRet = %TxnHead TxnDate?:date TransferFromAccountRef? FromAccountBalance?:amount
    TransferToAccountRef? ToAccountBalance?:amount ClassRef? Amount?:amount Memo?:str4095
TransferAdd = @defMacro? TxnDate?:date TransferFromAccountRef? TransferToAccountRef? ClassRef?
    Amount?:amount Memo?:str4095
TransferMod = %TxnChange TxnDate?:date TransferFromAccountRef? TransferToAccountRef? ClassRef?
    Amount?:amount Memo?:str4095
TotalBalanceFilter = Operator:=LessThan|LessThanEqual|Equal|GreaterThan|GreaterThanEqual
    Amount:amount
NameFilter = MatchCriterion:&MatchCriteria Name:str
NameRangeFilter = FromName?:str ToName?:str
ModifiedDateRangeFilter = FromModifiedDate?:datetime ToModifiedDate?:datetime
DeletedDateRangeFilter = FromDeletedDate?:datetime ToDeletedDate?:datetime
TxnDateRangeFilter = (FromTxnDate?:date ToTxnDate?:date | DateMacro:&DateMacros)
EntityFilter = (ListID+:id | FullName+:str | ListIDWithChildren:id | FullNameWithChildren:str)
TimeTrackingEntityFilter = (ListID+:id | FullName+:str)
AccountFilter = (ListID+:id | FullName+:str | ListIDWithChildren:id | FullNameWithChildren:str)
ItemFilter = (ListID+:id | FullName+:str159 | ListIDWithChildren:id | FullNameWithChildren:str159)
RefNumberFilter = MatchCriterion:&MatchCriteria RefNumber:str
RefNumberRangeFilter = FromRefNumber?:str ToRefNumber?:str
CurrencyFilter = (ListID+:id | FullName+:str64)
SiteFilter = (ListID+:id | FullName+:str64)
ClassFilter = (ListID+:id | FullName+:str | ListIDWithChildren:id | FullNameWithChildren:str)
IncludeListMetaData = IncludeMaxCapacity:bool
ListDeletedRet = ListDelType?:&DeletedLists ListID?:id TimeCreated?:datetime TimeDeleted?:datetime
    FullName?:str
MergeFrom = %ListChange
MergeTo = %ListChange
TxnDeletedRet = TxnDelType?:&DeletedTxns TxnID?:id TimeCreated?:datetime TimeDeleted?:datetime
    RefNumber?:str
AccountMetaData = MaxCapacity:int
BillingRateMetaData = MaxCapacity:int
ClassMetaData = MaxCapacity:int
CustomerMsgMetaData = MaxCapacity:int
CustomerTypeMetaData = MaxCapacity:int
EntityMetaData = MaxCapacity:int
ItemMetaData = MaxCapacity:int
JobTypeMetaData = MaxCapacity:int
PaymentMethodMetaData = MaxCapacity:int
PayrollItemMetaData = MaxCapacity:int
PriceLevelMetaData = MaxCapacity:int
SalesRepMetaData = MaxCapacity:int
SalesTaxCodeMetaData = MaxCapacity:int
ShipMethodMetaData = MaxCapacity:int
TemplateMetaData = MaxCapacity:int
TermsMetaData = MaxCapacity:int
ToDoMetaData = MaxCapacity:int
VehicleMetaData = MaxCapacity:int
VendorTypeMetaData = MaxCapacity:int
ListMetaData = AccountMetaData BillingRateMetaData ClassMetaData CustomerMsgMetaData
    CustomerTypeMetaData EntityMetaData ItemMetaData JobTypeMetaData PaymentMethodMetaData
    PayrollItemMetaData PriceLevelMetaData SalesRepMetaData SalesTaxCodeMetaData
    ShipMethodMetaData TemplateMetaData TermsMetaData ToDoMetaData VehicleMetaData
    VendorTypeMetaData
HostRet = ProductName?:str255 MajorVersion?:str5 MinorVersion?:str5 Country?:str2
    SupportedQBXMLVersion*:str10 IsAutomaticLogin?:bool QBFileMode?:=MultiUser|SingleUser
    ListMetaData?
Service = Name:str50 Domain:str50
    ServiceStatus:=Active|Expired|Never|Pending|Suspended|Terminated|Trial
SubscribedServices = Service*
AccountantCopy = AccountantCopyExists:bool DividingDate?:date
CompanyRet = IsSampleCompany?:bool CompanyName?:str59 LegalCompanyName?:str59 Address?
    AddressBlock? LegalAddress? CompanyAddressForCustomer? CompanyAddressBlockForCustomer?
    Phone?:str51 Fax?:str51 Email?:str1023 CompanyEmailForCustomer?:str CompanyWebSite?:str128
    FirstMonthFiscalYear?:&Months FirstMonthIncomeTaxYear?:&Months CompanyType?:str255 EIN?:str20
    SSN?:str11 TaxForm?:&TaxForms SubscribedServices? AccountantCopy? DataExtRet*
CompanyActivityRet = LastRestoreTime?:datetime LastCondenseTime?:datetime
AccountingPreferences = IsUsingAccountNumbers:bool IsRequiringAccounts:bool
    IsUsingClassTracking:bool AssignClassesTo?:=None|Accounts|Items|Names IsUsingAuditTrail:bool
    IsAssigningJournalEntryNumbers:bool ClosingDate?:date
FinanceChargePreferences = AnnualInterestRate?:percent MinFinanceCharge?:amount GracePeriod:int
    FinanceChargeAccountRef? IsAssessingForOverdueCharges:bool
    CalculateChargesFrom:=DueDate|InvoiceOrBilledDate IsMarkedToBePrinted:bool
JobsAndEstimatesPreferences = IsUsingEstimates:bool IsUsingProgressInvoicing:bool
    IsPrintingItemsWithZeroAmounts:bool
MultiCurrencyPreferences = IsMultiCurrencyOn?:bool HomeCurrencyRef?
MultiLocationInventoryPreferences = IsMultiLocationInventoryAvailable?:bool
    IsMultiLocationInventoryEnabled?:bool
ItemsAndInventoryPreferences = EnhancedInventoryReceivingEnabled?:bool
    IsTrackingSerialOrLotNumber?:=None|SerialNumber|LotNumber
    isTrackingOnSalesTransactionsEnabled?:bool isTrackingOnPurchaseTransactionsEnabled?:bool
    isTrackingOnInventoryAdjustmentEnabled?:bool isTrackingOnBuildAssemblyEnabled?:bool
    FIFOEnabled?:bool FIFOEffectiveDate?:date IsRSBEnabled?:bool IsBarcodeEnabled?:bool
PurchasesAndVendorsPreferences = IsUsingInventory:bool DaysBillsAreDue:int
    IsAutomaticallyUsingDiscounts:bool DefaultDiscountAccountRef?
ReportsPreferences = AgingReportBasis:=AgeFromDueDate|AgeFromTransactionDate
    SummaryReportBasis:=Accrual|Cash
PriceLevels = IsUsingPriceLevels:bool IsRoundingSalesPriceUp?:bool
SalesAndCustomersPreferences = DefaultShipMethodRef? DefaultFOB?:str13 DefaultMarkup?:percent
    IsTrackingReimbursedExpensesAsIncome:bool IsAutoApplyingPayments:bool PriceLevels?
SalesTaxPreferences = DefaultItemSalesTaxRef PaySalesTax:=Monthly|Quarterly|Annually
    DefaultTaxableSalesTaxCodeRef DefaultNonTaxableSalesTaxCodeRef IsUsingVendorTaxCode?:bool
    IsUsingCustomerTaxCode?:bool IsUsingAmountsIncludeTax?:bool
TimeTrackingPreferences = FirstDayOfWeek:=Monday|Tuesday|Wednesday|Thursday|Friday|Saturday|Sunday
CurrentAppAccessRights = IsAutomaticLoginAllowed:bool AutomaticLoginUserName?:str29
    IsPersonalDataAccessAllowed:bool
PreferencesRet = AccountingPreferences? FinanceChargePreferences? JobsAndEstimatesPreferences?
    MultiCurrencyPreferences? MultiLocationInventoryPreferences? PurchasesAndVendorsPreferences?
    ReportsPreferences? SalesAndCustomersPreferences? SalesTaxPreferences?
    TimeTrackingPreferences? CurrentAppAccessRights? ItemsAndInventoryPreferences?
TaxLineInfoRet = TaxLineID:int TaxLineName?:str256
)grammar";
}

}  // namespace ostrel::simulator
