#include <gtest/gtest.h>

#include "simulator/grammar/Grammar.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

TEST(Preferences, AreAsDefinedAndCanBeWrittenIntoTheFile) {
  Books books;
  XmlDocument document;
  ReadXmlText(FromUtf8(books.Ask("<PreferencesQueryRq/>")), 1'000, document);
  const Element& ret = document.root.children.front().children.front().children.front();
  EXPECT_NO_THROW(CheckContent(ret, *FindContent("PreferencesRet"), 130));
  EXPECT_EQ(books.Query("Preferences").Text("SalesTaxPreferences/DefaultItemSalesTaxRef/FullName"),
            "County");
  EXPECT_EQ(books.Query("Preferences", "<IncludeRetElement>ReportsPreferences</IncludeRetElement>")
                .Order(),
            "ReportsPreferences ");

  std::string file = kBooksFile;
  file.insert(file.find("</Company>"),
              "<Preferences><TimeTrackingPreferences><FirstDayOfWeek>Sunday</FirstDayOfWeek>"
              "</TimeTrackingPreferences></Preferences>");
  Books other(file);
  EXPECT_EQ(other.Query("Preferences").Text("TimeTrackingPreferences/FirstDayOfWeek"), "Sunday");
}

TEST(CompanyActivity, HasTimes) {
  EXPECT_EQ(Books().Query("CompanyActivity").Order(), "LastRestoreTime LastCondenseTime ");
}

TEST(SpecialObjects, AreAddedOnce) {
  Books books;
  const auto add = [&](const std::string& what, const std::string& type) {
    return books.Tell(Books::Leaf(
        "Special" + what + "AddRq",
        Books::Leaf("Special" + what + "Add", Books::Leaf("Special" + what + "Type", type))));
  };

  const QbxmlResponse account = add("Account", "PettyCash");
  EXPECT_EQ(account.Text("AccountType"), "Bank");
  EXPECT_EQ(account.Text("SpecialAccountType"), "PettyCash");
  EXPECT_EQ(add("Account", "PettyCash").Code(), "3100");
  EXPECT_EQ(books.Find("Account", "Petty Cash").Code(), "0");
  EXPECT_EQ(add("Item", "ReimbursableExpenseSubtotal").Text("SpecialItemType"),
            "ReimbursableExpenseSubtotal");
  EXPECT_EQ(add("Item", "FinanceCharge").Text("Name"), "Fin Chg");
  EXPECT_EQ(add("Item", "ReimbursableExpenseGroup").Code(), "0");
  EXPECT_EQ(add("Item", "FinanceCharge").Code(), "3100");
}

TEST(SpecialObjects, AreKnownForEveryTypeThatTheMessageHas) {
  Books books;
  const Particle& type = *FindContent("SpecialAccountAdd")->Find("SpecialAccountType");
  for (const std::string_view word : type.words) {
    const std::string code =
        books
            .Tell(Books::Leaf("SpecialAccountAddRq",
                              Books::Leaf("SpecialAccountAdd",
                                          Books::Leaf("SpecialAccountType", std::string(word)))))
            .Code();
    EXPECT_TRUE(code == "0" || code == "3100") << word << code;
    if (code == "3100") continue;  // the company has an account of that name
    EXPECT_NE(books.Query("Account", "<ActiveStatus>All</ActiveStatus>")
                  .All("SpecialAccountType")
                  .find(std::string(word) + ' '),
              std::string::npos)
        << word;
  }
}

TEST(Templates, AreThoseOfQuickBooksAndCanBeNamed) {
  Books books;

  EXPECT_NE(books.Query("Template").All("TemplateType").find("Estimate "), std::string::npos);
  const QbxmlResponse invoice =
      books.Add("Invoice", Books::Ref("CustomerRef", "Abbott") +
                               Books::Ref("TemplateRef", "Intuit Service Invoice") +
                               Books::InvoiceLine("Hammer", "1"));
  EXPECT_EQ(invoice.Text("TemplateRef/FullName"), "Intuit Service Invoice");
  EXPECT_EQ(books.File().find("<Template"), books.File().find("<TemplateRef>"));
  EXPECT_EQ(books.Query("Invoice").Text("TemplateRef/FullName"), "Intuit Service Invoice");
}

TEST(TaxLines, AreListed) {
  EXPECT_EQ(Books().Query("AccountTaxLineInfo").Order(), "TaxLineID TaxLineName ");
}

TEST(BarCodes, FindTheirObjects) {
  Books books;
  const auto barCode = [](const std::string& value) {
    return Books::Leaf("BarCode", Books::Leaf("BarCodeValue", value));
  };
  books.Add("ItemSubtotal", "<Name>Sum</Name>" + barCode("4711"));
  books.Add("ItemSubtotal", "<Name>Total</Name>" + barCode("4712"));

  EXPECT_EQ(books.Query("BarCode", "<BarCodeValue>4711</BarCodeValue>").All("FullName"), "Sum ");
  EXPECT_EQ(books.Query("BarCode").All("ListType"), "ItemSubtotal ItemSubtotal ");
  books.Modify("ItemSubtotal", books.Find("ItemSubtotal", "Sum"), barCode("99"));
  EXPECT_EQ(books.Query("BarCode", "<BarCodeValue>4711</BarCodeValue>").Code(), "1");
  EXPECT_EQ(books.Find("ItemSubtotal", "Sum").Text("BarCodeValue"), "99");
}

TEST(Windows, AreNotThere) {
  Books books;

  for (const char* message :
       {"<ListDisplayAddRq><ListDisplayAddType>Customer</ListDisplayAddType></ListDisplayAddRq>",
        "<TxnDisplayAddRq><TxnDisplayAddType>Invoice</TxnDisplayAddType></TxnDisplayAddRq>"}) {
    EXPECT_EQ(books.Tell(message).Code(), "3250");
    EXPECT_NE(books.Tell(message).Message().find("window"), std::string::npos);
  }
}

}  // namespace
}  // namespace ostrel::simulator
