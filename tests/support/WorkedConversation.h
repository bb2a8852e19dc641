// A conversation that a client of QuickBooks could have, from the first customer to the last
// deletion. It needs a company with a receivable account and an item "Hammer" at 12.50, and leaves
// it as it was but for its numbers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/QbxmlResponse.h"

namespace ostrel {

/// `send` takes a whole qbXML request and returns the whole response.
class WorkedConversation {
 public:
  using Send = std::function<std::string(const std::string& request)>;
  explicit WorkedConversation(Send send) : oSend(std::move(send)) {}

  void Hold() {
    AddCustomers();
    PageThroughThem();
    ModifyOne();
    InvoiceAndPay();
    DeleteEverything();
  }

 private:
  static constexpr int kCustomers = 5;

  QbxmlResponse Ask(const std::string& message) {
    return QbxmlResponse(
        oSend("<?xml version=\"1.0\"?><?qbxml version=\"13.0\"?><QBXML>"
              "<QBXMLMsgsRq onError=\"stopOnError\">" +
              message + "</QBXMLMsgsRq></QBXML>"));
  }
  static std::string Leaf(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">";
  }
  static std::string NameOf(int number) { return "Wren " + std::to_string(number); }
  QbxmlResponse FindCustomer(int number) {
    return Ask(Leaf("CustomerQueryRq", Leaf("FullName", NameOf(number))));
  }

  void AddCustomers() {
    for (int i = 0; i < kCustomers; ++i) {
      const QbxmlResponse added =
          Ask(Leaf("CustomerAddRq", Leaf("CustomerAdd", Leaf("Name", NameOf(i)))));
      EXPECT_EQ(added.Code(), "0") << added.Message();
      EXPECT_EQ(FindCustomer(i).Text("ListID"), added.Text("ListID"));
    }
  }

  QbxmlResponse Page(const std::string& attributes) {
    return Ask("<CustomerQueryRq " + attributes +
               "><MaxReturned>2</MaxReturned><NameFilter><MatchCriterion>StartsWith"
               "</MatchCriterion><Name>Wren</Name></NameFilter></CustomerQueryRq>");
  }

  void PageThroughThem() {
    QbxmlResponse page = Page("iterator=\"Start\"");
    std::string names = page.All("Name");
    for (int i = 0; i < kCustomers && page.Attribute("iteratorRemainingCount") != "0"; ++i) {
      page = Page("iterator=\"Continue\" iteratorID=\"" + page.Attribute("iteratorID") + "\"");
      names += page.All("Name");
    }
    EXPECT_EQ(names, "Wren 0 Wren 1 Wren 2 Wren 3 Wren 4 ");
  }

  QbxmlResponse SetPhone(const QbxmlResponse& known, const std::string& phone) {
    return Ask(Leaf("CustomerModRq",
                    Leaf("CustomerMod", Leaf("ListID", known.Text("ListID")) +
                                            Leaf("EditSequence", known.Text("EditSequence")) +
                                            Leaf("Phone", phone))));
  }

  void ModifyOne() {
    const QbxmlResponse stale = FindCustomer(0);
    EXPECT_EQ(SetPhone(stale, "555-0101").Text("Phone"), "555-0101");
    EXPECT_EQ(SetPhone(stale, "555-0102").Code(), "3200");
    EXPECT_EQ(FindCustomer(0).Text("Phone"), "555-0101");
  }

  void InvoiceAndPay() {
    const std::string customer = Leaf("CustomerRef", Leaf("FullName", NameOf(0)));
    const QbxmlResponse invoice =
        Ask(Leaf("InvoiceAddRq",
                 Leaf("InvoiceAdd", customer + Leaf("InvoiceLineAdd",
                                                    Leaf("ItemRef", Leaf("FullName", "Hammer")) +
                                                        Leaf("Quantity", "4")))));
    EXPECT_EQ(invoice.Text("BalanceRemaining"), "50.00") << invoice.Message();
    EXPECT_EQ(FindCustomer(0).Text("Balance"), "50.00");
    sInvoice = invoice.Text("TxnID");

    const QbxmlResponse payment =
        Ask(Leaf("ReceivePaymentAddRq",
                 Leaf("ReceivePaymentAdd",
                      customer + Leaf("TotalAmount", "50.00") +
                          Leaf("AppliedToTxnAdd",
                               Leaf("TxnID", sInvoice) + Leaf("PaymentAmount", "50.00")))));
    EXPECT_EQ(payment.Text("UnusedPayment"), "0.00") << payment.Message();
    sPayment = payment.Text("TxnID");
    EXPECT_EQ(Ask(Leaf("InvoiceQueryRq", Leaf("TxnID", sInvoice))).Text("IsPaid"), "true");
    EXPECT_EQ(FindCustomer(0).Text("Balance"), "0.00");
  }

  std::string CodeOfDeleting(const std::string& category, const std::string& kind,
                             const std::string& idName, const std::string& id) {
    return Ask(Leaf(category + "DelRq", Leaf(category + "DelType", kind) + Leaf(idName, id)))
        .Code();
  }

  void DeleteEverything() {
    const std::string used = FindCustomer(0).Text("ListID");
    EXPECT_EQ(CodeOfDeleting("List", "Customer", "ListID", used), "3160");
    EXPECT_EQ(CodeOfDeleting("Txn", "ReceivePayment", "TxnID", sPayment), "0");
    EXPECT_EQ(CodeOfDeleting("Txn", "Invoice", "TxnID", sInvoice), "0");
    for (int i = 0; i < kCustomers; ++i) {
      const std::string id = FindCustomer(i).Text("ListID");
      EXPECT_EQ(CodeOfDeleting("List", "Customer", "ListID", id), "0");
      EXPECT_EQ(FindCustomer(i).Code(), "500");
    }
  }

  Send oSend;
  std::string sInvoice;
  std::string sPayment;
};

}  // namespace ostrel
