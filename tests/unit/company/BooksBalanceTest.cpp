// Random valid changes of a company, after which its books must balance.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "simulator/tool/CompanyCheck.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

struct Made {
  std::string kind;
  std::string id;
};

// Makes, changes and deletes transactions by chance.
class Clerk {
 public:
  explicit Clerk(unsigned seed) : oChance(seed) {
    oBooks.Add("Account",
               "<Name>Undeposited Funds</Name><AccountType>OtherCurrentAsset"
               "</AccountType>");
    oBooks.Add("ItemInventory",
               "<Name>Saw</Name>" + Books::Ref("IncomeAccountRef", "Sales") +
                   "<PurchaseCost>9.50</PurchaseCost>" + Books::Ref("COGSAccountRef", "Goods") +
                   Books::Ref("AssetAccountRef", "Stock") + "<QuantityOnHand>30</QuantityOnHand>");
  }

  void Act() {
    static constexpr void (Clerk::*kActs[])() = {
        &Clerk::Sell,   &Clerk::Sell,    &Clerk::Buy,    &Clerk::Order,   &Clerk::Pay,
        &Clerk::Pay,    &Clerk::PayBill, &Clerk::Adjust, &Clerk::Journal, &Clerk::Deposit,
        &Clerk::Change, &Clerk::Delete,  &Clerk::Void};
    (this->*kActs[Below(std::size(kActs))])();
  }

  std::vector<std::string> Problems() {
    oBooks.File();
    const auto report = simulator::CheckCompany(Books::kPath, oBooks.oStorage,
                                                {1262682187, "2010-01-05T09:03:07+00:00"});
    std::vector<std::string> problems;
    for (const Text& problem : report.problems) problems.push_back(ToUtf8(problem));
    return problems;
  }

  int Carried() const { return iCarried; }
  Books oBooks;

 private:
  std::size_t Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(oChance);
  }
  std::string One(std::initializer_list<const char*> of) { return of.begin()[Below(of.size())]; }
  std::string Amount() {
    const std::string cents = std::to_string(Below(100));
    return std::to_string(1 + Below(90)) + (cents.size() < 2 ? ".0" : ".") + cents;
  }
  std::string Customer() {
    return Books::Ref("CustomerRef", One({"Abbott", "Abbott:Barn", "Zeller"}));
  }
  std::string Line(const std::string& name) {
    return Books::Leaf(name, Books::Ref("ItemRef", One({"Hammer", "Saw", "Repair"})) +
                                 Books::Leaf("Quantity", std::to_string(1 + Below(5))));
  }
  std::string Expense() {
    return Books::Leaf("ExpenseLineAdd",
                       Books::Ref("AccountRef", "Supplies") + Books::Leaf("Amount", Amount()));
  }

  void Make(const std::string& kind, const std::string& fields) {
    const QbxmlResponse made = oBooks.Add(kind, fields);
    if (made.Code() != "0") return;
    ++iCarried;
    oMade.push_back({kind, made.Text("TxnID")});
  }

  const Made* Some(std::initializer_list<std::string_view> kinds) {
    std::vector<const Made*> fitting;
    for (const Made& made : oMade) {
      if (std::ranges::find(kinds, made.kind) != kinds.end()) fitting.push_back(&made);
    }
    return fitting.empty() ? nullptr : fitting[Below(fitting.size())];
  }

  void Sell() {
    const std::string kind = One({"Invoice", "SalesReceipt", "CreditMemo", "Estimate"});
    const std::string tax = Below(2) == 0 ? Books::Ref("ItemSalesTaxRef", "County") : "";
    const std::string discount =
        Below(3) == 0 ? Books::Leaf(kind + "LineAdd", Books::Ref("ItemRef", "Trade")) : "";
    Make(kind, Customer() + tax + Line(kind + "LineAdd") + Line(kind + "LineAdd") + discount);
  }

  void Buy() {
    const std::string kind = One({"Bill", "VendorCredit", "Check", "CreditCardCharge"});
    const std::string from = kind == "Check"              ? Books::Ref("AccountRef", "Checking")
                             : kind == "CreditCardCharge" ? Books::Ref("AccountRef", "Card")
                                                          : Books::Ref("VendorRef", "Mill");
    Make(kind,
         from + Expense() +
             Books::Leaf("ItemLineAdd", Books::Ref("ItemRef", One({"Hammer", "Saw"})) +
                                            Books::Leaf("Quantity", std::to_string(1 + Below(9))) +
                                            Books::Leaf("Cost", Amount())));
  }

  void Order() {
    const Made* order = Some({"SalesOrder", "PurchaseOrder", "ItemReceipt", "Estimate"});
    if (!order || Below(2) == 0) {
      if (Below(2) == 0) return Make("SalesOrder", Customer() + Line("SalesOrderLineAdd"));
      return Make("PurchaseOrder", Books::Ref("VendorRef", "Mill") + Line("PurchaseOrderLineAdd"));
    }
    const bool isSale = order->kind == "SalesOrder" || order->kind == "Estimate";
    const std::string link = Books::Leaf("LinkToTxnID", order->id);
    if (isSale) return Make("Invoice", Books::Ref("CustomerRef", "Abbott") + link);
    Make(One({"Bill", "ItemReceipt"}), Books::Ref("VendorRef", "Mill") + link);
  }

  void Pay() {
    const Made* invoice = Some({"Invoice"});
    const Made* credit = Some({"CreditMemo"});
    const std::string total = Amount();
    if (!invoice || Below(3) == 0) {
      return Make("ReceivePayment", Customer() + Books::Leaf("TotalAmount", total) +
                                        "<IsAutoApply>true</IsAutoApply>");
    }
    std::string applied = Books::Leaf("TxnID", invoice->id) + Books::Leaf("PaymentAmount", total);
    if (credit && Below(2) == 0) {
      applied += Books::Leaf("SetCredit", Books::Leaf("CreditTxnID", credit->id) +
                                              "<AppliedAmount>1.00</AppliedAmount>");
    }
    if (Below(3) == 0) {
      applied +=
          "<DiscountAmount>0.50</DiscountAmount>" + Books::Ref("DiscountAccountRef", "Supplies");
    }
    Make("ReceivePayment",
         Customer() + Books::Leaf("TotalAmount", total) + Books::Leaf("AppliedToTxnAdd", applied));
  }

  void PayBill() {
    const Made* bill = Some({"Bill"});
    if (!bill) return;
    Make("BillPaymentCheck",
         Books::Ref("PayeeEntityRef", "Mill") + Books::Ref("BankAccountRef", "Checking") +
             "<IsToBePrinted>true</IsToBePrinted>" +
             Books::Leaf("AppliedToTxnAdd",
                         Books::Leaf("TxnID", bill->id) + Books::Leaf("PaymentAmount", Amount())));
  }

  void Adjust() {
    if (Below(2) == 0) {
      return Make("BuildAssembly", Books::Ref("ItemInventoryAssemblyRef", "Kit") +
                                       "<QuantityToBuild>1</QuantityToBuild>");
    }
    Make(
        "InventoryAdjustment",
        Books::Ref("AccountRef", "Supplies") +
            Books::Leaf("InventoryAdjustmentLineAdd",
                        Books::Ref("ItemRef", One({"Hammer", "Saw"})) +
                            Books::Leaf("QuantityAdjustment",
                                        Books::Leaf("QuantityDifference", One({"-2", "1", "4"})))));
  }

  void Journal() {
    const std::string amount = Books::Leaf("Amount", Amount());
    Make("JournalEntry",
         Books::Leaf("JournalDebitLine", Books::Ref("AccountRef", "Receivables") + amount +
                                             Books::Ref("EntityRef", "Zeller")) +
             Books::Leaf("JournalCreditLine",
                         Books::Ref("AccountRef", One({"Sales", "Checking"})) + amount));
  }

  void Deposit() {
    const Made* payment = Some({"ReceivePayment", "SalesReceipt"});
    if (!payment) return;
    Make("Deposit", Books::Ref("DepositToAccountRef", "Checking") +
                        Books::Leaf("DepositLineAdd", Books::Leaf("PaymentTxnID", payment->id)));
  }

  void Change() {
    const Made* made = Some({"Invoice", "SalesReceipt", "CreditMemo", "Estimate", "Bill"});
    if (!made) return;
    const QbxmlResponse known = oBooks.Query(
        made->kind, Books::Leaf("TxnID", made->id) + "<IncludeLineItems>true</IncludeLineItems>");
    const std::string line = made->kind == "Bill" ? "ExpenseLine" : made->kind + "Line";
    const std::string change = made->kind == "Bill"
                                   ? Books::Leaf("Amount", Amount())
                                   : Books::Leaf("Quantity", std::to_string(1 + Below(7)));
    const std::string id = known.Text(line + "Ret/TxnLineID");
    if (id.empty()) return;
    const QbxmlResponse changed = oBooks.Modify(
        made->kind, known, Books::Leaf(line + "Mod", Books::Leaf("TxnLineID", id) + change));
    iCarried += changed.Code() == "0" ? 1 : 0;
  }

  void Void() {
    const Made* made = Some({"Invoice", "SalesReceipt", "CreditMemo", "Bill", "Check", "Deposit",
                             "BillPaymentCheck", "InventoryAdjustment"});
    if (!made) return;
    const QbxmlResponse done = oBooks.Tell("<TxnVoidRq>" + Books::Leaf("TxnVoidType", made->kind) +
                                           Books::Leaf("TxnID", made->id) + "</TxnVoidRq>");
    iCarried += done.Code() == "0" ? 1 : 0;
  }

  void Delete() {
    if (oMade.empty()) return;
    const std::size_t at = Below(oMade.size());
    oBooks.Delete("Txn", oMade[at].kind, oMade[at].id);
    ++iCarried;
    oMade.erase(oMade.begin() + static_cast<std::ptrdiff_t>(at));
  }

  std::mt19937 oChance;
  std::vector<Made> oMade;
  int iCarried = 0;
};

class BooksBalance : public testing::TestWithParam<unsigned> {};

TEST_P(BooksBalance, AfterManyChanges) {
  constexpr int kRounds = 8, kActsEach = 100;
  SCOPED_TRACE("seed " + std::to_string(GetParam()));
  Clerk clerk(GetParam());

  for (int round = 0; round < kRounds; ++round) {
    for (int i = 0; i < kActsEach; ++i) clerk.Act();
    ASSERT_EQ(clerk.Problems(), std::vector<std::string>()) << "round " << round;
  }

  EXPECT_GT(clerk.Carried(), kRounds * kActsEach / 2);
}

INSTANTIATE_TEST_SUITE_P(Seeds, BooksBalance, testing::Values(1u, 2u));

}  // namespace
}  // namespace ostrel
