// The transactions and their lines, in the notation of Definitions.h.
// From public facts on qbXML 13.0.
#include "simulator/grammar/Definitions.h"

namespace ostrel::simulator {

std::string_view TransactionDefinitions() {
  return R"grammar(
ExpenseLineRet = TxnLineID:id AccountRef? Amount?:amount TaxAmount?:amount Memo?:str4095
    CustomerRef? ClassRef? SalesTaxCodeRef? BillableStatus?:&BillableStatuses SalesRepRef?
    DataExtRet*
ExpenseLineAdd = @defMacro? AccountRef? Amount?:amount TaxAmount?:amount Memo?:str4095
    CustomerRef? ClassRef? SalesTaxCodeRef? BillableStatus?:&BillableStatuses SalesRepRef?
    DataExt*
ExpenseLineMod = TxnLineID:id AccountRef? Amount?:amount TaxAmount?:amount Memo?:str4095
    CustomerRef? ClassRef? SalesTaxCodeRef? BillableStatus?:&BillableStatuses SalesRepRef?
ItemLineRet = TxnLineID:id ItemRef? InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0
    %Tracking Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0
    Cost?:price Amount?:amount TaxAmount?:amount CustomerRef? ClassRef? SalesTaxCodeRef?
    BillableStatus?:&BillableStatuses SalesRepRef? DataExtRet*
ItemLineAdd = ItemRef? InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 %Tracking
    Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0 Cost?:price Amount?:amount
    TaxAmount?:amount CustomerRef? ClassRef? SalesTaxCodeRef? BillableStatus?:&BillableStatuses
    OverrideItemAccountRef? LinkToTxn? SalesRepRef? DataExt*
ItemLineMod = TxnLineID:id ItemRef? InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0
    %Tracking Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0
    Cost?:price Amount?:amount TaxAmount?:amount CustomerRef? ClassRef? SalesTaxCodeRef?
    BillableStatus?:&BillableStatuses OverrideItemAccountRef? SalesRepRef?
ItemGroupLineRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 TotalAmount:amount ItemLineRet* DataExt*
ItemGroupLineAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 DataExt*
ItemGroupLineMod = TxnLineID:id ItemGroupRef? Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 ItemLineMod*
LinkedTxn = TxnID:id TxnType:&TxnTypes TxnDate:date RefNumber?:str20 LinkType?:=AMTTYPE|QUANTYPE
    Amount:amount TxnLineDetail*
DiscountLineAdd = (Amount:amount | RatePercent:percent)? IsTaxable?:bool AccountRef?
SalesTaxLineAdd = (Amount:amount | RatePercent:percent)? AccountRef?
ShippingLineAdd = Amount:amount AccountRef?
DiscountLineRet = (Amount:amount | RatePercent:percent)? IsTaxable?:bool AccountRef?
SalesTaxLineRet = (Amount:amount | RatePercent:percent)? AccountRef?
ShippingLineRet = Amount:amount AccountRef?
InvoiceLineRet = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent)? ClassRef? Amount?:amount
    TaxAmount?:amount InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 %Tracking
    ServiceDate?:date SalesTaxCodeRef? IsTaxable?:bool Other1?:str29 Other2?:str29 DataExtRet*
InvoiceLineGroupRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 IsPrintItemsInGroup:bool TotalAmount:amount
    ServiceDate?:date InvoiceLineRet* DataExtRet*
InvoiceLineAdd = @defMacro? ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0
    (Rate:price | RatePercent:percent | PriceLevelRef)? ClassRef? Amount?:amount TaxAmount?:amount
    OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking ServiceDate?:date SalesTaxCodeRef? IsTaxable?:bool
    OverrideItemAccountRef? Other1?:str29 Other2?:str29 LinkToTxn? DataExt*
InvoiceLineGroupAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    ServiceDate?:date InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 DataExt*
InvoiceLineMod = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent | PriceLevelRef)? ClassRef?
    Amount?:amount TaxAmount?:amount OptionForPriceRuleConflict?:=Zero|BasePrice^13.0
    InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 %Tracking ServiceDate?:date
    SalesTaxCodeRef? OverrideItemAccountRef? Other1?:str29 Other2?:str29
InvoiceLineGroupMod = TxnLineID:id ItemGroupRef? Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 InvoiceLineMod*
InvoiceRet = %TxnHead CustomerRef? ClassRef? ARAccountRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? BillAddressBlock? ShipAddress? ShipAddressBlock? IsPending?:bool
    IsFinanceCharge?:bool PONumber?:str25 TermsRef? DueDate?:date SalesRepRef? FOB?:str13
    ShipDate?:date ShipMethodRef? Subtotal?:amount ItemSalesTaxRef? SalesTaxPercentage?:percent
    SalesTaxTotal?:amount AppliedAmount?:amount BalanceRemaining?:amount CurrencyRef?^8.0
    ExchangeRate?:float^8.0 BalanceRemainingInHomeCurrency?:amount^8.0 Memo?:str4095 IsPaid?:bool
    CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? SuggestedDiscountAmount?:amount SuggestedDiscountDate?:date
    Other?:str29^6.0 ExternalGUID?:guid^9.0 LinkedTxn* (InvoiceLineRet | InvoiceLineGroupRet)*
    DiscountLineRet? SalesTaxLineRet? ShippingLineRet? DataExtRet*
InvoiceAdd = @defMacro? CustomerRef ClassRef? ARAccountRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? ShipAddress? IsPending?:bool IsFinanceCharge?:bool
    PONumber?:str25 TermsRef? DueDate?:date SalesRepRef? FOB?:str13 ShipDate?:date ShipMethodRef?
    ItemSalesTaxRef? Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0
    IsTaxIncluded?:bool CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 LinkToTxnID*:id SetCredit* (InvoiceLineAdd | InvoiceLineGroupAdd)*
    DiscountLineAdd? SalesTaxLineAdd? ShippingLineAdd?
InvoiceMod = %TxnChange CustomerRef? ClassRef? ARAccountRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? ShipAddress? IsPending?:bool PONumber?:str25 TermsRef?
    DueDate?:date SalesRepRef? FOB?:str13 ShipDate?:date ShipMethodRef? ItemSalesTaxRef?
    Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0 SetCredit* (InvoiceLineMod |
    InvoiceLineGroupMod)*
EstimateLineRet = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent)? ClassRef? Amount?:amount
    TaxAmount?:amount InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 SalesTaxCodeRef?
    (MarkupRate:price | MarkupRatePercent:percent)? Other1?:str29 Other2?:str29 DataExtRet*
EstimateLineAdd = ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0 (Rate:price |
    RatePercent:percent)? ClassRef? Amount?:amount TaxAmount?:amount
    OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 SalesTaxCodeRef? (MarkupRate:price | MarkupRatePercent:percent
    | PriceLevelRef)? OverrideItemAccountRef? Other1?:str29 Other2?:str29 DataExt*
EstimateLineMod = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent)? ClassRef? Amount?:amount
    TaxAmount?:amount OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 SalesTaxCodeRef? (MarkupRate:price | MarkupRatePercent:percent
    | PriceLevelRef)? Other1?:str29 Other2?:str29
EstimateLineGroupRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 IsPrintItemsInGroup:bool TotalAmount:amount
    EstimateLineRet* DataExtRet*
EstimateLineGroupAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 DataExt*
EstimateLineGroupMod = TxnLineID:id ItemGroupRef? Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 EstimateLineMod*
EstimateRet = %TxnHead CustomerRef? ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? BillAddressBlock? ShipAddress? ShipAddressBlock? IsActive?:bool PONumber?:str25
    TermsRef? DueDate?:date SalesRepRef? FOB?:str13 Subtotal?:amount ItemSalesTaxRef?
    SalesTaxPercentage?:percent SalesTaxTotal?:amount TotalAmount?:amount CurrencyRef?^8.0
    ExchangeRate?:float^8.0 TotalAmountInHomeCurrency?:amount^8.0 Memo?:str4095 CustomerMsgRef?
    IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool CustomerSalesTaxCodeRef? Other?:str29^6.0
    ExternalGUID?:guid^9.0 LinkedTxn* (EstimateLineRet | EstimateLineGroupRet)* DataExtRet*
EstimateAdd = @defMacro? CustomerRef ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? ShipAddress? IsActive?:bool PONumber?:str25 TermsRef? DueDate?:date SalesRepRef?
    FOB?:str13 ItemSalesTaxRef? Memo?:str4095 CustomerMsgRef? IsToBeEmailed?:bool^6.0
    IsTaxIncluded?:bool CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 (EstimateLineAdd | EstimateLineGroupAdd)+
EstimateMod = %TxnChange CustomerRef? ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? ShipAddress? IsActive?:bool CreateChangeOrder?:bool PONumber?:str25 TermsRef?
    DueDate?:date SalesRepRef? FOB?:str13 ItemSalesTaxRef? Memo?:str4095 CustomerMsgRef?
    IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool CustomerSalesTaxCodeRef? Other?:str29^6.0
    ExchangeRate?:float^8.0 (EstimateLineMod | EstimateLineGroupMod)*
SalesOrderLineRet = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent)? ClassRef?
    Amount?:amount TaxAmount?:amount InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0
    %Tracking SalesTaxCodeRef? Invoiced?:quantity IsManuallyClosed?:bool Other1?:str29
    Other2?:str29 DataExtRet*
SalesOrderLineAdd = ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0 (Rate:price
    | RatePercent:percent | PriceLevelRef)? ClassRef? Amount?:amount TaxAmount?:amount
    OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking SalesTaxCodeRef? IsManuallyClosed?:bool Other1?:str29
    Other2?:str29 DataExt*
SalesOrderLineMod = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent |
    PriceLevelRef)? ClassRef? Amount?:amount TaxAmount?:amount
    OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking SalesTaxCodeRef? IsManuallyClosed?:bool Other1?:str29
    Other2?:str29
SalesOrderLineGroupRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 IsPrintItemsInGroup:bool TotalAmount:amount
    SalesOrderLineRet* DataExtRet*
SalesOrderLineGroupAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 DataExt*
SalesOrderLineGroupMod = TxnLineID:id ItemGroupRef? Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 SalesOrderLineMod*
SalesOrderRet = %TxnHead CustomerRef? ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? BillAddressBlock? ShipAddress? ShipAddressBlock? PONumber?:str25 TermsRef?
    DueDate?:date SalesRepRef? FOB?:str13 ShipDate?:date ShipMethodRef? Subtotal?:amount
    ItemSalesTaxRef? SalesTaxPercentage?:percent SalesTaxTotal?:amount TotalAmount?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 TotalAmountInHomeCurrency?:amount^8.0
    IsManuallyClosed?:bool IsFullyInvoiced?:bool Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool
    IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool CustomerSalesTaxCodeRef? Other?:str29^6.0
    ExternalGUID?:guid^9.0 LinkedTxn* (SalesOrderLineRet | SalesOrderLineGroupRet)* DataExtRet*
SalesOrderAdd = @defMacro? CustomerRef ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? ShipAddress? PONumber?:str25 TermsRef? DueDate?:date SalesRepRef? FOB?:str13
    ShipDate?:date ShipMethodRef? ItemSalesTaxRef? IsManuallyClosed?:bool Memo?:str4095
    CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0
    (SalesOrderLineAdd | SalesOrderLineGroupAdd)+
SalesOrderMod = %TxnChange CustomerRef? ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? ShipAddress? PONumber?:str25 TermsRef? DueDate?:date SalesRepRef? FOB?:str13
    ShipDate?:date ShipMethodRef? ItemSalesTaxRef? IsManuallyClosed?:bool Memo?:str4095
    CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0 (SalesOrderLineMod |
    SalesOrderLineGroupMod)*
SalesReceiptLineRet = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent)? ClassRef?
    Amount?:amount TaxAmount?:amount InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0
    %Tracking ServiceDate?:date SalesTaxCodeRef? IsTaxable?:bool Other1?:str29 Other2?:str29
    CreditCardTxnInfo? DataExtRet*
SalesReceiptLineAdd = @defMacro? ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 (Rate:price | RatePercent:percent | PriceLevelRef)? ClassRef?
    Amount?:amount TaxAmount?:amount OptionForPriceRuleConflict?:=Zero|BasePrice^13.0
    InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 %Tracking ServiceDate?:date
    SalesTaxCodeRef? IsTaxable?:bool OverrideItemAccountRef? Other1?:str29 Other2?:str29
    CreditCardTxnInfo? DataExt*
SalesReceiptLineGroupRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 IsPrintItemsInGroup:bool TotalAmount:amount
    ServiceDate?:date SalesReceiptLineRet* DataExtRet*
SalesReceiptLineGroupAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    ServiceDate?:date InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 DataExt*
SalesReceiptLineMod = TxnLineID:macro ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent |
    PriceLevelRef)? ClassRef? Amount?:amount TaxAmount?:amount
    OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking ServiceDate?:date SalesTaxCodeRef?
    OverrideItemAccountRef? Other1?:str29 Other2?:str29
SalesReceiptLineGroupMod = TxnLineID:macro ItemGroupRef? Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 SalesReceiptLineMod*
SalesReceiptRet = %TxnHead CustomerRef? ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? BillAddressBlock? ShipAddress? ShipAddressBlock? IsPending?:bool
    CheckNumber?:str25 PaymentMethodRef? DueDate?:date SalesRepRef? ShipDate?:date ShipMethodRef?
    FOB?:str13 Subtotal?:amount ItemSalesTaxRef? SalesTaxPercentage?:percent SalesTaxTotal?:amount
    TotalAmount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    TotalAmountInHomeCurrency?:amount^8.0 Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool
    IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool CustomerSalesTaxCodeRef? DepositToAccountRef?
    CreditCardTxnInfo? Other?:str29^6.0 ExternalGUID?:guid^9.0 (SalesReceiptLineRet |
    SalesReceiptLineGroupRet)* DiscountLineRet? SalesTaxLineRet? ShippingLineRet? DataExtRet*
SalesReceiptAdd = @defMacro? CustomerRef? ClassRef? TemplateRef? TxnDate?:date RefNumber?:str11
    BillAddress? ShipAddress? IsPending?:bool CheckNumber?:str25 PaymentMethodRef? DueDate?:date
    SalesRepRef? ShipDate?:date ShipMethodRef? FOB?:str13 ItemSalesTaxRef? Memo?:str4095
    CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? DepositToAccountRef? CreditCardTxnInfo? Other?:str29^6.0
    ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0 (SalesReceiptLineAdd |
    SalesReceiptLineGroupAdd)+ DiscountLineAdd? SalesTaxLineAdd? ShippingLineAdd?
SalesReceiptMod = TxnID:macro EditSequence:str16 CustomerRef? ClassRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? ShipAddress? IsPending?:bool CheckNumber?:str25
    PaymentMethodRef? DueDate?:date SalesRepRef? ShipDate?:date ShipMethodRef? FOB?:str13
    ItemSalesTaxRef? Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0
    IsTaxIncluded?:bool CustomerSalesTaxCodeRef? DepositToAccountRef? Other?:str29^6.0
    ExchangeRate?:float^8.0 (SalesReceiptLineMod | SalesReceiptLineGroupMod)*
CreditMemoLineRet = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent)? ClassRef?
    Amount?:amount TaxAmount?:amount InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0
    %Tracking ServiceDate?:date SalesTaxCodeRef? IsTaxable?:bool Other1?:str29 Other2?:str29
    CreditCardTxnInfo? DataExtRet*
CreditMemoLineAdd = @defMacro? ItemRef? Desc?:str4095 Quantity?:quantity UnitOfMeasure?:str31^7.0
    (Rate:price | RatePercent:percent | PriceLevelRef)? ClassRef? Amount?:amount TaxAmount?:amount
    InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 %Tracking ServiceDate?:date
    SalesTaxCodeRef? IsTaxable?:bool OverrideItemAccountRef? Other1?:str29 Other2?:str29
    CreditCardTxnInfo? DataExt*
CreditMemoLineMod = TxnLineID:id ItemRef? Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 (Rate:price | RatePercent:percent |
    PriceLevelRef)? ClassRef? Amount?:amount TaxAmount?:amount InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking ServiceDate?:date SalesTaxCodeRef?
    OverrideItemAccountRef? Other1?:str29 Other2?:str29
CreditMemoLineGroupRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 IsPrintItemsInGroup:bool TotalAmount:amount
    ServiceDate?:date CreditMemoLineRet* DataExtRet*
CreditMemoLineGroupAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    ServiceDate?:date InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 DataExt*
CreditMemoLineGroupMod = TxnLineID:id ItemGroupRef? Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 CreditMemoLineMod*
CreditMemoRet = %TxnHead CustomerRef? ClassRef? ARAccountRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? BillAddressBlock? ShipAddress? ShipAddressBlock? IsPending?:bool
    PONumber?:str25 TermsRef? DueDate?:date SalesRepRef? FOB?:str13 ShipDate?:date ShipMethodRef?
    Subtotal?:amount ItemSalesTaxRef? SalesTaxPercentage?:percent SalesTaxTotal?:amount
    TotalAmount?:amount CreditRemaining?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    CreditRemainingInHomeCurrency?:amount^8.0 Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool
    IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool CustomerSalesTaxCodeRef? Other?:str29^6.0
    ExternalGUID?:guid^9.0 LinkedTxn* (CreditMemoLineRet | CreditMemoLineGroupRet)*
    DiscountLineRet? SalesTaxLineRet? ShippingLineRet? DataExtRet*
CreditMemoAdd = @defMacro? CustomerRef ClassRef? ARAccountRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? ShipAddress? IsPending?:bool PONumber?:str25 TermsRef?
    DueDate?:date SalesRepRef? FOB?:str13 ShipDate?:date ShipMethodRef? ItemSalesTaxRef?
    Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0
    (CreditMemoLineAdd | CreditMemoLineGroupAdd)+ DiscountLineAdd? SalesTaxLineAdd?
    ShippingLineAdd?
CreditMemoMod = %TxnChange CustomerRef? ClassRef? ARAccountRef? TemplateRef? TxnDate?:date
    RefNumber?:str11 BillAddress? ShipAddress? IsPending?:bool PONumber?:str25 TermsRef?
    DueDate?:date SalesRepRef? FOB?:str13 ShipDate?:date ShipMethodRef? ItemSalesTaxRef?
    Memo?:str4095 CustomerMsgRef? IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    CustomerSalesTaxCodeRef? Other?:str29^6.0 ExchangeRate?:float^8.0 (CreditMemoLineMod |
    CreditMemoLineGroupMod)*
TxnLineDetail = TxnLineID:id Amount:amount
AppliedToTxnRet = TxnID:id TxnType:&TxnTypes TxnDate?:date RefNumber?:str20
    BalanceRemaining?:amount Amount?:amount TxnLineDetail* DiscountAmount?:amount
    DiscountAccountRef? DiscountClassRef? LinkedTxn*
AppliedToTxnAdd = TxnID:macro PaymentAmount?:amount TxnLineDetail* SetCredit*
    DiscountAmount?:amount DiscountAccountRef? DiscountClassRef?
AppliedToTxnMod = TxnID:id PaymentAmount?:amount SetCredit* DiscountAmount?:amount
    DiscountAccountRef? DiscountClassRef?
SetCredit = CreditTxnID:macro TxnLineID?:id AppliedAmount:amount Override?:bool
ReceivePaymentRet = %TxnHead CustomerRef? ARAccountRef? TxnDate?:date RefNumber?:str20
    TotalAmount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    TotalAmountInHomeCurrency?:amount^8.0 PaymentMethodRef? Memo?:str4095 DepositToAccountRef?
    CreditCardTxnInfo? UnusedPayment?:amount UnusedCredits?:amount ExternalGUID?:guid^9.0
    AppliedToTxnRet* DataExtRet*
ReceivePaymentAdd = @defMacro? CustomerRef ARAccountRef? TxnDate?:date RefNumber?:str20
    TotalAmount?:amount ExchangeRate?:float^8.0 PaymentMethodRef? Memo?:str4095
    DepositToAccountRef? CreditCardTxnInfo? ExternalGUID?:guid^9.0 (IsAutoApply:bool |
    AppliedToTxnAdd+)
ReceivePaymentMod = %TxnChange CustomerRef? ARAccountRef? TxnDate?:date RefNumber?:str20
    TotalAmount?:amount ExchangeRate?:float^8.0 PaymentMethodRef? Memo?:str4095
    DepositToAccountRef? CreditCardTxnInfoMod? AppliedToTxnMod*
ReceivePaymentToDepositRet = TxnID?:id TxnLineID?:id TxnType?:&TxnTypes CustomerRef? TxnDate?:date
    RefNumber?:str Amount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    AmountInHomeCurrency?:amount^8.0
ChargeRet = %TxnHead CustomerRef? TxnDate?:date RefNumber?:str11 ItemRef? InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 Rate?:price Amount?:amount BalanceRemaining?:amount Desc?:str4095
    ARAccountRef? ClassRef? BilledDate?:date DueDate?:date IsPaid?:bool ExternalGUID?:guid^9.0
    LinkedTxn* DataExtRet*
ChargeAdd = @defMacro? CustomerRef TxnDate?:date RefNumber?:str11 ItemRef? InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 Quantity?:quantity UnitOfMeasure?:str31^7.0 Rate?:price
    OptionForPriceRuleConflict?:=Zero|BasePrice^13.0 Amount?:amount Desc?:str4095 ARAccountRef?
    ClassRef? BilledDate?:date DueDate?:date OverrideItemAccountRef? ExternalGUID?:guid^9.0
ChargeMod = %TxnChange CustomerRef? TxnDate?:date RefNumber?:str11 ItemRef? InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 Quantity?:quantity UnitOfMeasure?:str31^7.0
    OverrideUOMSetRef?^7.0 Rate?:price OptionForPriceRuleConflict?:=Zero|BasePrice^13.0
    Amount?:amount Desc?:str4095 ARAccountRef? ClassRef? BilledDate?:date DueDate?:date
    OverrideItemAccountRef?
PurchaseOrderLineRet = TxnLineID:id ItemRef? ManufacturerPartNumber?:str31 Desc?:str4095
    Quantity?:quantity UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 Rate?:price ClassRef?
    Amount?:amount TaxAmount?:amount InventorySiteLocationRef?^12.0 CustomerRef? ServiceDate?:date
    SalesTaxCodeRef? ReceivedQuantity?:quantity UnbilledQuantity?:quantity IsBilled?:bool
    IsManuallyClosed?:bool Other1?:str29 Other2?:str29 DataExtRet*
PurchaseOrderLineAdd = @defMacro? ItemRef? ManufacturerPartNumber?:str31 Desc?:str4095
    Quantity?:quantity UnitOfMeasure?:str31^7.0 Rate?:price ClassRef? Amount?:amount
    TaxAmount?:amount InventorySiteLocationRef?^12.0 CustomerRef? ServiceDate?:date
    SalesTaxCodeRef? OverrideItemAccountRef? Other1?:str29 Other2?:str29 DataExt*
PurchaseOrderLineMod = TxnLineID:macro ItemRef? ManufacturerPartNumber?:str31 Desc?:str4095
    Quantity?:quantity UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 Rate?:price ClassRef?
    Amount?:amount TaxAmount?:amount InventorySiteLocationRef?^12.0 CustomerRef? ServiceDate?:date
    SalesTaxCodeRef? IsManuallyClosed?:bool OverrideItemAccountRef? Other1?:str29 Other2?:str29
PurchaseOrderLineGroupRet = TxnLineID:id ItemGroupRef Desc?:str4095 Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 IsPrintItemsInGroup:bool TotalAmount:amount
    ServiceDate?:date PurchaseOrderLineRet* DataExtRet*
PurchaseOrderLineGroupAdd = ItemGroupRef Desc?:str Quantity?:quantity UnitOfMeasure?:str31^7.0
    ServiceDate?:date InventorySiteLocationRef?^12.0 DataExt*
PurchaseOrderLineGroupMod = TxnLineID:macro ItemGroupRef? Quantity?:quantity
    UnitOfMeasure?:str31^7.0 OverrideUOMSetRef?^7.0 PurchaseOrderLineMod*
PurchaseOrderRet = %TxnHead VendorRef? ClassRef? InventorySiteRef?^10.0 ShipToEntityRef?
    TemplateRef? TxnDate?:date RefNumber?:str11 VendorAddress? VendorAddressBlock? ShipAddress?
    ShipAddressBlock? TermsRef? DueDate?:date ExpectedDate?:date ShipMethodRef? FOB?:str13
    TotalAmount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    TotalAmountInHomeCurrency?:amount^8.0 IsManuallyClosed?:bool IsFullyReceived?:bool
    Memo?:str4095 VendorMsg?:str99 IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    SalesTaxCodeRef? Other1?:str25 Other2?:str29 ExternalGUID?:guid^9.0 LinkedTxn*
    (PurchaseOrderLineRet | PurchaseOrderLineGroupRet)* DataExtRet*
PurchaseOrderAdd = @defMacro? VendorRef? ClassRef? (InventorySiteRef?^10.0 | ShipToEntityRef?)?
    TemplateRef? TxnDate?:date RefNumber?:str11 VendorAddress? ShipAddress? TermsRef?
    DueDate?:date ExpectedDate?:date ShipMethodRef? FOB?:str13 Memo?:str4095 VendorMsg?:str99
    IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool SalesTaxCodeRef? Other1?:str25
    Other2?:str29 ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0 (PurchaseOrderLineAdd |
    PurchaseOrderLineGroupAdd)+
PurchaseOrderMod = TxnID:macro EditSequence:str16 VendorRef? ClassRef? (InventorySiteRef?^10.0 |
    ShipToEntityRef?)? TemplateRef? TxnDate?:date RefNumber?:str11 VendorAddress? ShipAddress?
    TermsRef? DueDate?:date ExpectedDate?:date ShipMethodRef? FOB?:str13 IsManuallyClosed?:bool
    Memo?:str4095 VendorMsg?:str99 IsToBePrinted?:bool IsToBeEmailed?:bool^6.0 IsTaxIncluded?:bool
    SalesTaxCodeRef? Other1?:str25 Other2?:str29 ExchangeRate?:float^8.0 (PurchaseOrderLineMod |
    PurchaseOrderLineGroupMod)*
BillRet = %TxnHead VendorRef? VendorAddress? APAccountRef? TxnDate?:date DueDate?:date
    AmountDue?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountDueInHomeCurrency?:amount^8.0
    RefNumber?:str20 TermsRef? Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? IsPaid?:bool
    ExternalGUID?:guid^9.0 LinkedTxn* ExpenseLineRet* (ItemLineRet | ItemGroupLineRet)*
    OpenAmount?:amount DataExtRet*
BillAdd = @defMacro? VendorRef VendorAddress? APAccountRef? TxnDate?:date DueDate?:date
    RefNumber?:str20 TermsRef? Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef?
    ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0 LinkToTxnID*:id ExpenseLineAdd* (ItemLineAdd |
    ItemGroupLineAdd)*
BillMod = %TxnChange VendorRef? VendorAddress? APAccountRef? TxnDate?:date DueDate?:date
    RefNumber?:str20 TermsRef? Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef?
    ExchangeRate?:float^8.0 ClearExpenseLines?:bool ExpenseLineMod* ClearItemLines?:bool
    (ItemLineMod | ItemGroupLineMod)*
ItemReceiptRet = %TxnHead VendorRef? (APAccountRef? | LiabilityAccountRef?)? TxnDate?:date
    TotalAmount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    TotalAmountInHomeCurrency?:amount^8.0 RefNumber?:str20 Memo?:str4095 IsTaxIncluded?:bool
    SalesTaxCodeRef? ExternalGUID?:guid^9.0 LinkedTxn* ExpenseLineRet* (ItemLineRet |
    ItemGroupLineRet)* DataExtRet*
ItemReceiptAdd = @defMacro? VendorRef APAccountRef? TxnDate?:date RefNumber?:str20 Memo?:str4095
    IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0
    LinkToTxnID*:id ExpenseLineAdd* (ItemLineAdd | ItemGroupLineAdd)*
ItemReceiptMod = %TxnChange VendorRef? APAccountRef? TxnDate?:date RefNumber?:str20 Memo?:str4095
    IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0 ClearExpenseLines?:bool
    ExpenseLineMod* ClearItemLines?:bool (ItemLineMod | ItemGroupLineMod)*
VendorCreditRet = %TxnHead VendorRef? APAccountRef? TxnDate?:date CreditAmount?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 CreditAmountInHomeCurrency?:amount^8.0
    RefNumber?:str20 Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExternalGUID?:guid^9.0
    LinkedTxn* ExpenseLineRet* (ItemLineRet | ItemGroupLineRet)* OpenAmount?:amount DataExtRet*
VendorCreditAdd = @defMacro? VendorRef APAccountRef? TxnDate?:date RefNumber?:str20 Memo?:str4095
    IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0
    ExpenseLineAdd* (ItemLineAdd | ItemGroupLineAdd)*
VendorCreditMod = %TxnChange VendorRef? APAccountRef? TxnDate?:date RefNumber?:str20 Memo?:str4095
    IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0 ClearExpenseLines?:bool
    ExpenseLineMod* ClearItemLines?:bool (ItemLineMod | ItemGroupLineMod)*
BillPaymentCheckRet = %TxnHead PayeeEntityRef? APAccountRef? TxnDate?:date BankAccountRef?
    Amount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountInHomeCurrency?:amount^8.0
    RefNumber?:str11 Memo?:str4095 Address? AddressBlock? IsToBePrinted?:bool
    ExternalGUID?:guid^9.0 AppliedToTxnRet* DataExtRet*
BillPaymentCreditCardRet = %TxnHead PayeeEntityRef? APAccountRef? TxnDate?:date
    CreditCardAccountRef? Amount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    AmountInHomeCurrency?:amount^8.0 RefNumber?:str11 Memo?:str4095 ExternalGUID?:guid^9.0
    AppliedToTxnRet* DataExtRet*
BillPaymentCheckAdd = @defMacro? PayeeEntityRef APAccountRef? TxnDate?:date BankAccountRef
    (IsToBePrinted:bool | RefNumber:str11) Memo?:str4095 ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 AppliedToTxnAdd+
BillPaymentCreditCardAdd = @defMacro? PayeeEntityRef APAccountRef? TxnDate?:date
    CreditCardAccountRef RefNumber?:str11 Memo?:str4095 ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 AppliedToTxnAdd+
BillPaymentCheckMod = %TxnChange TxnDate?:date BankAccountRef? Amount?:amount
    ExchangeRate?:float^8.0 (IsToBePrinted:bool | RefNumber:str11)? Memo?:str4095 AppliedToTxnMod*
BillToPay = TxnID:id TxnType:&TxnTypes APAccountRef TxnDate:date RefNumber?:str20 DueDate?:date
    AmountDue:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountDueInHomeCurrency?:amount^8.0
CreditToApply = TxnID:id TxnType:&TxnTypes APAccountRef TxnDate:date RefNumber?:str20
    CreditRemaining:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    CreditRemainingInHomeCurrency?:amount^8.0
BillToPayRet = (BillToPay | CreditToApply)?
SalesTaxPaymentCheckLineRet = TxnLineID:id ItemSalesTaxRef? Amount?:amount TaxAmount?:amount
SalesTaxPaymentCheckLineAdd = ItemSalesTaxRef? Amount:amount
SalesTaxPaymentCheckRet = %TxnHead PayeeEntityRef? TxnDate?:date BankAccountRef? Amount?:amount
    RefNumber?:str11 Memo?:str4095 Address? AddressBlock? IsToBePrinted?:bool
    ExternalGUID?:guid^9.0 SalesTaxPaymentCheckLineRet* DataExtRet*
SalesTaxPaymentCheckAdd = @defMacro? PayeeEntityRef TxnDate:date BankAccountRef
    (IsToBePrinted:bool | RefNumber:str) Memo?:str4095 Address? ExternalGUID?:guid^9.0
    SalesTaxPaymentCheckLineAdd+
SalesTaxPaymentCheckMod = %TxnChange TxnDate?:date BankAccountRef? (IsToBePrinted:bool |
    RefNumber:str)? Memo?:str4095 Address?
SalesTaxPayableLineRet = ItemSalesTaxRef? Amount:amount
SalesTaxPayableRet = PayeeEntityRef? Amount?:amount SalesTaxPayableLineRet*
QuantityAdjustment = (NewQuantity:quantity | QuantityDifference:quantity) %Tracking
    InventorySiteLocationRef?^12.0
ValueAdjustment = (NewQuantity?:quantity | QuantityDifference:quantity) (NewValue:amount |
    ValueDifference:amount)?
SerialNumberAdjustment = (AddSerialNumber?:str4095 | RemoveSerialNumber?:str4095)
    InventorySiteLocationRef?^12.0
LotNumberAdjustment = LotNumber?:str40^11.0 CountAdjustment?:int InventorySiteLocationRef?^12.0
InventoryAdjustmentLineAdd = ItemRef (QuantityAdjustment | ValueAdjustment |
    SerialNumberAdjustment | LotNumberAdjustment)
InventoryAdjustmentLineMod = TxnLineID:id ItemRef? (SerialNumber?:str4095^11.0 |
    LotNumber?:str40^11.0 CountAdjustment?:int) InventorySiteLocationRef?^12.0
    QuantityDifference?:quantity ValueDifference?:amount
InventoryAdjustmentLineRet = TxnLineID:id ItemRef (SerialNumber?:str4095^11.0
    SerialNumberAddedOrRemoved?:=Added|Removed | LotNumber?:str40^11.0)?
    InventorySiteLocationRef?^12.0 QuantityDifference:quantity ValueDifference:amount
InventoryAdjustmentRet = %TxnHead AccountRef? InventorySiteRef?^10.0 TxnDate?:date
    RefNumber?:str11 CustomerRef? ClassRef? Memo?:str4095 ExternalGUID?:guid^9.0
    InventoryAdjustmentLineRet* DataExtRet*
InventoryAdjustmentAdd = @defMacro? AccountRef TxnDate?:date RefNumber?:str11
    InventorySiteRef?^10.0 CustomerRef? ClassRef? Memo?:str4095 ExternalGUID?:guid^9.0
    InventoryAdjustmentLineAdd+
InventoryAdjustmentMod = %TxnChange AccountRef? InventorySiteRef?^10.0 TxnDate?:date
    RefNumber?:str11 CustomerRef? ClassRef? Memo?:str4095 InventoryAdjustmentLineMod*
TimeTrackingRet = %TxnHead TxnDate?:date EntityRef? CustomerRef? ItemServiceRef? Rate?:price
    Duration?:interval ClassRef? PayrollItemWageRef? Notes?:str4095
    BillableStatus?:&BillableStatuses ExternalGUID?:guid^9.0
TimeTrackingAdd = @defMacro? TxnDate?:date EntityRef CustomerRef? ItemServiceRef? Rate?:price
    Duration:interval ClassRef? PayrollItemWageRef? Notes?:str4095
    BillableStatus?:&BillableStatuses ExternalGUID?:guid^9.0
TimeTrackingMod = %TxnChange TxnDate?:date EntityRef CustomerRef? ItemServiceRef? Rate?:price
    Duration:interval ClassRef? PayrollItemWageRef? Notes?:str4095
    BillableStatus?:&BillableStatuses
CheckRet = %TxnHead AccountRef? PayeeEntityRef? RefNumber?:str11 TxnDate?:date Amount?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountInHomeCurrency?:amount^8.0 Memo?:str4095
    Address? AddressBlock? IsToBePrinted?:bool IsTaxIncluded?:bool SalesTaxCodeRef?
    ExternalGUID?:guid^9.0 LinkedTxn* ExpenseLineRet* (ItemLineRet | ItemGroupLineRet)*
    DataExtRet*
ApplyCheckToTxnAdd = TxnID:macro Amount?:amount
CheckAdd = @defMacro? AccountRef PayeeEntityRef? RefNumber?:str11 TxnDate?:date Memo?:str4095
    Address? IsToBePrinted?:bool IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 ApplyCheckToTxnAdd* ExpenseLineAdd* (ItemLineAdd | ItemGroupLineAdd)*
ApplyCheckToTxnMod = TxnID:macro Amount?:amount
CheckMod = %TxnChange AccountRef? PayeeEntityRef? RefNumber?:str11 TxnDate?:date Memo?:str4095
    Address? IsToBePrinted?:bool IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0
    ApplyCheckToTxnMod* ClearExpenseLines?:bool ExpenseLineMod* ClearItemLines?:bool (ItemLineMod
    | ItemGroupLineMod)*
CreditCardChargeRet = %TxnHead AccountRef? PayeeEntityRef? TxnDate?:date Amount?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountInHomeCurrency?:amount^8.0 RefNumber?:str11
    Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExternalGUID?:guid^9.0 ExpenseLineRet*
    (ItemLineRet | ItemGroupLineRet)* DataExtRet*
CreditCardChargeAdd = @defMacro? AccountRef PayeeEntityRef? TxnDate?:date RefNumber?:str11
    Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 ExpenseLineAdd* (ItemLineAdd | ItemGroupLineAdd)*
CreditCardChargeMod = %TxnChange AccountRef? PayeeEntityRef? TxnDate?:date RefNumber?:str11
    Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0
    ClearExpenseLines?:bool ExpenseLineMod* ClearItemLines?:bool (ItemLineMod | ItemGroupLineMod)*
CreditCardCreditRet = %TxnHead AccountRef? PayeeEntityRef? TxnDate?:date Amount?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountInHomeCurrency?:amount^8.0 RefNumber?:str11
    Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExternalGUID?:guid^9.0 ExpenseLineRet*
    (ItemLineRet | ItemGroupLineRet)* DataExtRet*
CreditCardCreditAdd = @defMacro? AccountRef PayeeEntityRef? TxnDate?:date RefNumber?:str11
    Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0
    ExternalGUID?:guid^9.0 ExpenseLineAdd* (ItemLineAdd | ItemGroupLineAdd)*
CreditCardCreditMod = %TxnChange AccountRef? PayeeEntityRef? TxnDate?:date RefNumber?:str11
    Memo?:str4095 IsTaxIncluded?:bool SalesTaxCodeRef? ExchangeRate?:float^8.0
    ClearExpenseLines?:bool ExpenseLineMod* ClearItemLines?:bool (ItemLineMod | ItemGroupLineMod)*
JournalDebitLine = @defMacro? TxnLineID?:id AccountRef? Amount?:amount TaxAmount?:amount
    Memo?:str4095 EntityRef? ClassRef? ItemSalesTaxRef? BillableStatus?:&BillableStatuses
JournalCreditLine = @defMacro? TxnLineID?:id AccountRef? Amount?:amount TaxAmount?:amount
    Memo?:str4095 EntityRef? ClassRef? ItemSalesTaxRef? BillableStatus?:&BillableStatuses
JournalEntryRet = %TxnHead TxnDate?:date RefNumber?:str11 Memo?:str IsAdjustment?:bool
    IsHomeCurrencyAdjustment?:bool IsAmountsEnteredInHomeCurrency?:bool^8.0 CurrencyRef?^8.0
    ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0 (JournalDebitLine | JournalCreditLine)*
    DataExtRet*
JournalEntryAdd = @defMacro? TxnDate?:date RefNumber?:str11 Memo?:str IsAdjustment?:bool
    (IsHomeCurrencyAdjustment:bool | IsAmountsEnteredInHomeCurrency?:bool^8.0 CurrencyRef?^8.0
    ExchangeRate?:float^8.0)? ExternalGUID?:guid^9.0 (JournalDebitLine | JournalCreditLine)+
JournalLineMod = TxnLineID:id JournalLineType?:=Debit|Credit AccountRef? Amount?:amount
    TaxAmount?:amount Memo?:str4095 EntityRef? ClassRef? ItemSalesTaxRef?
    BillableStatus?:&BillableStatuses
JournalEntryMod = %TxnChange TxnDate?:date RefNumber?:str11 IsAdjustment?:bool
    IsAmountsEnteredInHomeCurrency?:bool^8.0 CurrencyRef?^8.0 ExchangeRate?:float^8.0
    JournalLineMod*
CashBackInfoAdd = @defMacro? AccountRef Memo?:str4095 Amount?:amount
CashBackInfoMod = AccountRef? Memo?:str4095 Amount?:amount
CashBackInfoRet = TxnLineID:id AccountRef Memo?:str4095 Amount?:amount
DepositLineAdd = @defMacro? (PaymentTxnID:macro PaymentTxnLineID?:macro OverrideMemo?:str4095
    OverrideCheckNumber?:str11 OverrideClassRef? | EntityRef? AccountRef Memo?:str4095
    CheckNumber?:str11 PaymentMethodRef? ClassRef? Amount?:amount)
DepositLineMod = TxnLineID:id (PaymentTxnID:macro PaymentTxnLineID?:macro OverrideMemo?:str4095
    OverrideCheckNumber?:str11 OverrideClassRef? | EntityRef? AccountRef? Memo?:str4095
    CheckNumber?:str11 PaymentMethodRef? ClassRef? Amount?:amount)
DepositLineRet = TxnType?:&TxnTypes TxnID?:id TxnLineID:id PaymentTxnLineID?:id EntityRef?
    AccountRef? Memo?:str4095 CheckNumber?:str11 PaymentMethodRef? ClassRef? Amount?:amount
DepositRet = %TxnHead TxnDate?:date DepositToAccountRef? Memo?:str4095 DepositTotal?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 DepositTotalInHomeCurrency?:amount^8.0
    CashBackInfoRet? ExternalGUID?:guid^9.0 DepositLineRet* DataExtRet*
DepositAdd = @defMacro? TxnDate?:date DepositToAccountRef Memo?:str4095 CashBackInfoAdd?
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0 DepositLineAdd*
DepositMod = %TxnChange TxnDate?:date DepositToAccountRef? Memo?:str4095 CashBackInfoMod?
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 DepositLineMod*
ClearedStatusMod = TxnID:macro TxnLineID?:macro ClearedStatus:=Cleared|NotCleared|Pending
TransactionRet = TxnType?:&TxnTypes TxnID?:id TxnLineID?:id TimeCreated?:datetime
    TimeModified?:datetime EntityRef? AccountRef? TxnDate?:date RefNumber?:str Amount?:amount
    CurrencyRef?^8.0 ExchangeRate?:float^8.0 AmountInHomeCurrency?:amount^8.0 Memo?:str4095
ComponentItemLineRet = ItemRef InventorySiteRef?^10.0 InventorySiteLocationRef?^12.0 %Tracking
    Desc?:str4095 QuantityOnHand?:quantity QuantityNeeded?:quantity
BuildAssemblyRet = %TxnHead ItemInventoryAssemblyRef InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking TxnDate:date RefNumber?:str11 Memo?:str4095
    IsPending?:bool QuantityToBuild:quantity QuantityCanBuild:quantity QuantityOnHand:quantity
    QuantityOnSalesOrder:quantity ExternalGUID?:guid^9.0 ComponentItemLineRet* DataExtRet*
BuildAssemblyAdd = @defMacro? ItemInventoryAssemblyRef InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking TxnDate?:date RefNumber?:str11 Memo?:str4095
    QuantityToBuild:quantity MarkPendingIfRequired?:bool ExternalGUID?:guid^9.0
BuildAssemblyMod = TxnID:macro EditSequence:str16 InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 %Tracking TxnDate?:date RefNumber?:str11 Memo?:str4095
    QuantityToBuild?:quantity MarkPendingIfRequired?:bool RemovePending?:bool
ItemAssembliesCanBuildRet = ItemInventoryAssemblyRef TxnDate?:date QuantityCanBuild:quantity
RefundAppliedToTxnRet = TxnID:id TxnType:&TxnTypes TxnDate:date RefNumber?:str20
    CreditRemaining:amount RefundAmount:amount CreditRemainingInHomeCurrency?:amount^8.0
    RefundAmountInHomeCurrency?:amount^8.0
RefundAppliedToTxnAdd = TxnID:macro RefundAmount:amount
ARRefundCreditCardRet = %TxnHead CustomerRef? RefundFromAccountRef? ARAccountRef? TxnDate?:date
    RefNumber?:str11 TotalAmount?:amount CurrencyRef?^8.0 ExchangeRate?:float^8.0
    TotalAmountInHomeCurrency?:amount^8.0 Address? AddressBlock? PaymentMethodRef? Memo?:str4095
    CreditCardTxnInfo? ExternalGUID?:guid^9.0 RefundAppliedToTxnRet* DataExtRet*
ARRefundCreditCardAdd = @defMacro? CustomerRef RefundFromAccountRef? ARAccountRef? TxnDate?:date
    RefNumber?:str11 Address? PaymentMethodRef? Memo?:str4095 CreditCardTxnInfo?
    ExchangeRate?:float^8.0 ExternalGUID?:guid^9.0 RefundAppliedToTxnAdd+
VehicleMileageRet = TxnID?:id TimeCreated?:datetime TimeModified?:datetime EditSequence?:str16
    VehicleRef? CustomerRef? ItemRef? ClassRef? TripStartDate?:date TripEndDate?:date
    OdometerStart?:quantity OdometerEnd?:quantity TotalMiles?:quantity Notes?:str4095
    BillableStatus?:&BillableStatuses StandardMileageRate?:percent
    StandardMileageTotalAmount?:amount BillableRate?:price BillableAmount?:amount
VehicleMileageAdd = @defMacro? VehicleRef CustomerRef? ItemRef? ClassRef? TripStartDate?:date
    TripEndDate?:date (OdometerStart:quantity OdometerEnd:quantity | TotalMiles:quantity)
    Notes?:str4095 BillableStatus?:&BillableStatuses
TransferInventoryLineRet = TxnLineID:id ItemRef? FromInventorySiteLocationRef?
    ToInventorySiteLocationRef? QuantityTransferred?:quantity %Tracking
TransferInventoryRet = %TxnHead TxnDate?:date RefNumber?:str11 FromInventorySiteRef?
    ToInventorySiteRef? Memo?:str4095 ExternalGUID?:guid^9.0 TransferInventoryLineRet*
TransferInventoryLineAdd = @defMacro? ItemRef? FromInventorySiteLocationRef?
    ToInventorySiteLocationRef? QuantityToTransfer?:quantity %Tracking
TransferInventoryAdd = @defMacro? TxnDate?:date RefNumber?:str11 FromInventorySiteRef
    ToInventorySiteRef Memo?:str4095 ExternalGUID?:guid^9.0 TransferInventoryLineAdd*
TransferInventoryLineMod = TxnLineID:id ItemRef? FromInventorySiteLocationRef?
    ToInventorySiteLocationRef? QuantityToTransfer?:quantity %Tracking
TransferInventoryMod = %TxnChange TxnDate?:date RefNumber?:str11 FromInventorySiteRef?
    ToInventorySiteRef? Memo?:str4095 TransferInventoryLineMod*
ItemSitesRet = %ListHead (ItemInventoryAssemblyRef | ItemInventoryRef) InventorySiteRef?^10.0
    InventorySiteLocationRef?^12.0 ReorderLevel?:quantity QuantityOnHand?:quantity
    QuantityOnPurchaseOrders?:quantity QuantityOnSalesOrders?:quantity
    QuantityToBeBuiltByPendingBuildTxns?:quantity QuantityRequiredByPendingBuildTxns?:quantity
    QuantityOnPendingTransfers?:quantity AssemblyBuildPoint?:quantity
)grammar";
}

}  // namespace ostrel::simulator
