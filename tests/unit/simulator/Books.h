// A small company with accounts, items and people in it, and a client that talks with it.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/QbxmlResponse.h"
#include "tests/unit/simulator/Conversation.h"

namespace ostrel {

inline constexpr char kBooksFile[] = R"(<Company name="Marsh Tools">
  <Account><Name>Checking</Name><AccountType>Bank</AccountType></Account>
  <Account><Name>Receivables</Name><AccountType>AccountsReceivable</AccountType></Account>
  <Account><Name>Payables</Name><AccountType>AccountsPayable</AccountType></Account>
  <Account><Name>Sales</Name><AccountType>Income</AccountType></Account>
  <Account><Name>Supplies</Name><AccountType>Expense</AccountType></Account>
  <Account><Name>Goods</Name><AccountType>CostOfGoodsSold</AccountType></Account>
  <Account><Name>Stock</Name><AccountType>OtherCurrentAsset</AccountType></Account>
  <Account><Name>Sales Tax Payable</Name><AccountType>OtherCurrentLiability</AccountType></Account>
  <Account><Name>Card</Name><AccountType>CreditCard</AccountType></Account>
  <SalesTaxCode><Name>Tax</Name><IsTaxable>true</IsTaxable></SalesTaxCode>
  <SalesTaxCode><Name>Non</Name><IsTaxable>false</IsTaxable></SalesTaxCode>
  <ItemSalesTax><Name>County</Name><TaxRate>8.0</TaxRate></ItemSalesTax>
  <StandardTerms><Name>Net 30</Name><StdDueDays>30</StdDueDays></StandardTerms>
  <Customer><Name>Abbott</Name><TermsRef><FullName>Net 30</FullName></TermsRef></Customer>
  <Customer><Name>Barn</Name><ParentRef><FullName>Abbott</FullName></ParentRef></Customer>
  <Customer><Name>Zeller</Name></Customer>
  <Vendor><Name>Mill</Name></Vendor>
  <Vehicle><Name>Van</Name></Vehicle>
  <InventorySite><Name>Yard</Name></InventorySite>
  <InventorySite><Name>Shop</Name></InventorySite>
  <ItemInventoryAssembly><Name>Kit</Name>
    <IncomeAccountRef><FullName>Sales</FullName></IncomeAccountRef>
    <COGSAccountRef><FullName>Goods</FullName></COGSAccountRef>
    <AssetAccountRef><FullName>Stock</FullName></AssetAccountRef>
    <ItemInventoryAssemblyLine><ItemInventoryRef><FullName>Hammer</FullName></ItemInventoryRef>
      <Quantity>2</Quantity></ItemInventoryAssemblyLine></ItemInventoryAssembly>
  <ItemService><Name>Repair</Name>
    <SalesTaxCodeRef><FullName>Non</FullName></SalesTaxCodeRef>
    <SalesOrPurchase><Desc>Repair work</Desc><Price>40.00</Price>
      <AccountRef><FullName>Sales</FullName></AccountRef></SalesOrPurchase></ItemService>
  <ItemInventory><Name>Hammer</Name>
    <SalesTaxCodeRef><FullName>Tax</FullName></SalesTaxCodeRef>
    <SalesDesc>Claw hammer</SalesDesc><SalesPrice>12.50</SalesPrice>
    <IncomeAccountRef><FullName>Sales</FullName></IncomeAccountRef>
    <PurchaseCost>7.00</PurchaseCost>
    <COGSAccountRef><FullName>Goods</FullName></COGSAccountRef>
    <AssetAccountRef><FullName>Stock</FullName></AssetAccountRef>
    <QuantityOnHand>20</QuantityOnHand></ItemInventory>
  <ItemDiscount><Name>Trade</Name><DiscountRatePercent>10.0</DiscountRatePercent>
    <AccountRef><FullName>Sales</FullName></AccountRef></ItemDiscount>
</Company>
)";

class Books : public Conversation {
 public:
  explicit Books(std::string file = kBooksFile) : Conversation(std::move(file)) {
    sVersion = "13.0";
  }

  QbxmlResponse Tell(std::string_view message) { return QbxmlResponse(Ask(message)); }

  /// Tells "<CustomerAddRq><CustomerAdd>...".
  QbxmlResponse Add(const std::string& kind, const std::string& fields) {
    return Tell(Wrapped(kind, "Add", fields));
  }
  /// Modifies the object that the response holds, as the response knew it.
  QbxmlResponse Modify(const std::string& kind, const QbxmlResponse& known,
                       const std::string& fields) {
    const std::string id = known.Has("TxnID") ? "TxnID" : "ListID";
    return Tell(Wrapped(
        kind, "Mod",
        Leaf(id, known.Text(id)) + Leaf("EditSequence", known.Text("EditSequence")) + fields));
  }
  QbxmlResponse Query(const std::string& kind, const std::string& filters = "",
                      const std::string& attributes = "") {
    return Tell("<" + kind + "QueryRq " + attributes + ">" + filters + "</" + kind + "QueryRq>");
  }
  QbxmlResponse Find(const std::string& kind, const std::string& fullName) {
    return Query(kind, Leaf("FullName", fullName));
  }
  std::string Balance(const std::string& kind, const std::string& fullName) {
    return Find(kind, fullName).Text("Balance");
  }
  QbxmlResponse Delete(const std::string& category, const std::string& kind,
                       const std::string& id) {
    return Tell("<" + category + "DelRq><" + category + "DelType>" + kind + "</" + category +
                "DelType><" + (category == "List" ? "ListID>" : "TxnID>") + id +
                (category == "List" ? "</ListID>" : "</TxnID>") + "</" + category + "DelRq>");
  }

  static std::string Leaf(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
  }
  static std::string Ref(const std::string& name, const std::string& fullName) {
    return Leaf(name, Leaf("FullName", fullName));
  }
  /// A company file but for what it remembers of deleted objects.
  static std::string WithoutDeletions(std::string file) {
    constexpr std::string_view kEnd = "</Deletion>\n";
    const std::size_t begin = file.find("  <Deletion>");
    if (begin == std::string::npos) return file;
    return file.erase(begin, file.rfind(kEnd) + kEnd.size() - begin);
  }
  /// An invoice line of so many of an item, at the item's price.
  static std::string InvoiceLine(const std::string& item, const std::string& quantity) {
    return Leaf("InvoiceLineAdd", Ref("ItemRef", item) + Leaf("Quantity", quantity));
  }
  /// An invoice to Abbott over 25.00 before tax.
  QbxmlResponse InvoiceTwoHammers() {
    return Add("Invoice", Ref("CustomerRef", "Abbott") + InvoiceLine("Hammer", "2"));
  }
  QbxmlResponse Pay(const QbxmlResponse& invoice, const std::string& amount) {
    return Add("ReceivePayment", Ref("CustomerRef", "Abbott") + Leaf("TotalAmount", amount) +
                                     Leaf("AppliedToTxnAdd", Leaf("TxnID", invoice.Text("TxnID")) +
                                                                 Leaf("PaymentAmount", amount)));
  }

 private:
  static std::string Wrapped(const std::string& kind, const std::string& verb,
                             const std::string& fields) {
    return Leaf(kind + verb + "Rq", Leaf(kind + verb, fields));
  }
};

}  // namespace ostrel
