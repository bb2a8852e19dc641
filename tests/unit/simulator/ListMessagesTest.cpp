// Lists of all kinds: adding, changing, deleting.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/kinds/Kinds.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

using testing::HasSubstr;

// The fields that an AddRq of each kind needs beside the name.
const std::map<std::string, std::string>& Needs() {
  const std::string account = Books::Ref("AccountRef", "Sales");
  const std::string sold = Books::Leaf("SalesOrPurchase", account);
  const std::string stocked = Books::Ref("IncomeAccountRef", "Sales") +
                              Books::Ref("COGSAccountRef", "Goods") +
                              Books::Ref("AssetAccountRef", "Stock");
  static const std::map<std::string, std::string> needs = {
      {"DateDrivenTerms", "<DayOfMonthDue>1</DayOfMonthDue>"},
      {"ItemService", sold},
      {"ItemNonInventory", sold},
      {"ItemOtherCharge", sold},
      {"ItemInventoryAssembly", stocked},
      {"ItemFixedAsset",
       "<AcquiredAs>New</AcquiredAs><PurchaseDesc>Van</PurchaseDesc><PurchaseDate>2010-01-01"
       "</PurchaseDate>" +
           Books::Ref("AssetAccountRef", "Stock")},
      {"ItemSalesTaxGroup", Books::Ref("ItemSalesTaxRef", "County")},
      {"UnitOfMeasureSet",
       "<UnitOfMeasureType>Count</UnitOfMeasureType><BaseUnit><Name>each</Name><Abbreviation>ea"
       "</Abbreviation></BaseUnit>"},
      {"PriceLevel", "<PriceLevelFixedPercentage>-5</PriceLevelFixedPercentage>"},
      {"BillingRate", "<FixedBillingRate>40</FixedBillingRate>"},
      {"PayrollItemWage",
       "<WageType>Bonus</WageType>" + Books::Ref("ExpenseAccountRef", "Supplies")},
      {"WorkersCompCode",
       "<RateEntry><Rate>1.5</Rate><EffectiveDate>2010-01-01</EffectiveDate></RateEntry>"},
      {"Currency", "<CurrencyCode>EUR</CurrencyCode>"},
      {"Account", "<AccountType>Bank</AccountType>"},
      {"SalesTaxCode", "<IsTaxable>true</IsTaxable>"},
      {"ItemInventory", stocked},
      {"ItemDiscount", account},
      {"SalesRep", Books::Ref("SalesRepEntityRef", "Mill")}};
  return needs;
}

std::string FieldsOfNew(const simulator::Kind& kind) {
  const std::string kindName(kind.name);
  const std::string nameField = kind.nameParts.empty() ? std::string(kind.nameField) : "FirstName";
  const auto needs = Needs().find(kindName);
  return Books::Leaf(nameField, "New") + (needs == Needs().end() ? "" : needs->second);
}

// The kinds of lists whose objects a client can make and call by a name.
bool IsMade(const simulator::Kind& kind) {
  const bool isAdded = simulator::FindContent(std::string(kind.name).append("Add")) != nullptr;
  return kind.category == simulator::Category::kList && isAdded && kind.nameField != "ListID";
}

bool CanRest(const simulator::Kind& kind) {
  const simulator::Field* field =
      simulator::FindField(kind.fields, "IsActive", simulator::Use::kMod);
  return field != nullptr;
}

TEST(Lists, OfEveryKindAreAddedFoundModifiedAndDeleted) {
  for (const simulator::Kind* kind : simulator::AllKinds()) {
    if (!IsMade(*kind) || kind->name == "Lead") continue;
    const std::string name(kind->name);
    SCOPED_TRACE(name);
    Books books;

    const QbxmlResponse added = books.Add(name, FieldsOfNew(*kind));
    const QbxmlResponse found = books.Find(name, "New");
    if (CanRest(*kind)) {
      const QbxmlResponse changed = books.Modify(name, found, "<IsActive>false</IsActive>");
      EXPECT_EQ(changed.Text("IsActive"), "false") << changed.Message();
    }
    const QbxmlResponse deleted = books.Delete("List", name, found.Text("ListID"));

    EXPECT_EQ(added.Code(), "0") << added.Message();
    EXPECT_EQ(found.Text("ListID"), added.Text("ListID"));
    EXPECT_EQ(deleted.Code(), "0") << deleted.Message();
    EXPECT_EQ(books.Find(name, "New").Code(), "500");
  }
}

TEST(Lists, OfEveryKindOutliveTheirSession) {
  Books books;
  for (const simulator::Kind* kind : simulator::AllKinds()) {
    if (!IsMade(*kind)) continue;
    std::string fields = FieldsOfNew(*kind);
    fields.replace(fields.find("New"), 3, "N" + std::to_string(simulator::IndexOf(*kind)));
    ASSERT_EQ(books.Add(std::string(kind->name), fields).Code(), "0") << kind->name;
  }
  const std::string before = books.File();

  Books later(before);
  later.Add("Class", "<Name>Last</Name>");
  later.Delete("List", "Class", later.Find("Class", "Last").Text("ListID"));

  EXPECT_EQ(Books::WithoutDeletions(later.File()), before);
}

TEST(Lists, ReturnReferencesByIdAndName) {
  Books books;
  const std::string id = books.Find("StandardTerms", "Net 30").Text("ListID");

  const QbxmlResponse byName =
      books.Add("Customer", "<Name>Q1</Name>" + Books::Ref("TermsRef", "net 30"));
  const QbxmlResponse byId =
      books.Add("Customer", "<Name>Q2</Name><TermsRef><ListID>" + id + "</ListID></TermsRef>");

  EXPECT_EQ(byName.Text("TermsRef/ListID"), id);
  EXPECT_EQ(byName.Text("TermsRef/FullName"), "Net 30");
  EXPECT_EQ(byId.Text("TermsRef/FullName"), "Net 30");
}

TEST(Lists, RefuseAReferenceToNothing) {
  Books books;

  const QbxmlResponse response =
      books.Add("Customer", "<Name>Q</Name>" + Books::Ref("TermsRef", "Net 99"));

  EXPECT_EQ(response.Code(), "3140");
  EXPECT_THAT(response.Message(), HasSubstr("invalid reference to QuickBooks Terms \"Net 99\" in "
                                            "the Customer."));
}

TEST(Lists, RefuseAReferenceToAnAccountOfAnotherType) {
  Books books;

  const QbxmlResponse response = books.Add(
      "Invoice", Books::Ref("CustomerRef", "Abbott") + Books::Ref("ARAccountRef", "Checking"));

  EXPECT_EQ(response.Code(), "3150");
}

TEST(Lists, NameChildrenAfterTheirParents) {
  Books books;

  const QbxmlResponse response =
      books.Add("Customer", "<Name>Stall</Name>" + Books::Ref("ParentRef", "Abbott:Barn"));

  EXPECT_EQ(response.Text("Name"), "Stall");
  EXPECT_EQ(response.Text("FullName"), "Abbott:Barn:Stall");
  EXPECT_EQ(response.Text("Sublevel"), "2");
  EXPECT_EQ(response.Text("ParentRef/FullName"), "Abbott:Barn");
}

TEST(Lists, ReturnChildrenDirectlyBehindTheirParent) {
  Books books;
  books.Add("Customer", "<Name>Abbott and Sons</Name>");

  EXPECT_EQ(books.Query("Customer").All("FullName"), "Abbott Abbott:Barn Abbott and Sons Zeller ");
}

TEST(Lists, NestFiveLevelsDeepAndNoMore) {
  Books books;
  std::string parent = "Abbott:Barn";
  for (const char* name : {"C", "D", "E"}) {
    EXPECT_EQ(
        books.Add("Customer", Books::Leaf("Name", name) + Books::Ref("ParentRef", parent)).Code(),
        "0");
    parent += std::string(":") + name;
  }

  EXPECT_EQ(books.Add("Customer", "<Name>F</Name>" + Books::Ref("ParentRef", parent)).Code(),
            "3180");
}

TEST(Lists, TakeTheSameNameBelowAnotherParent) {
  Books books;

  EXPECT_EQ(books.Add("Customer", "<Name>Barn</Name>").Code(), "0");
  EXPECT_EQ(books.Add("Customer", "<Name>barn</Name>" + Books::Ref("ParentRef", "Abbott")).Code(),
            "3100");
}

// Customers, vendors, employees and other names share their names, as items do.
TEST(Lists, RefuseANameOfAnotherKindOfTheFamily) {
  Books books;

  EXPECT_EQ(books.Add("Vendor", "<Name>Zeller</Name>").Code(), "3100");
  EXPECT_EQ(books.Add("ItemSalesTax", "<Name>Hammer</Name>").Code(), "3100");
  EXPECT_EQ(books.Add("Class", "<Name>Zeller</Name>").Code(), "0");
}

TEST(Lists, MakeTheNameOfAnEmployee) {
  Books books;

  const QbxmlResponse added =
      books.Add("Employee", "<FirstName>Jo</FirstName><LastName>Reed</LastName>");
  const QbxmlResponse changed = books.Modify("Employee", added, "<LastName>Read</LastName>");

  EXPECT_EQ(added.Text("Name"), "Jo Reed");
  EXPECT_EQ(changed.Text("Name"), "Jo Read");
}

TEST(Lists, OpenWithABalance) {
  Books books;

  const QbxmlResponse response = books.Add("Customer",
                                           "<Name>Q</Name><OpenBalance>99.50</OpenBalance>"
                                           "<OpenBalanceDate>2010-01-01</OpenBalanceDate>");

  EXPECT_EQ(response.Text("Balance"), "99.50");
  EXPECT_EQ(response.Text("TotalBalance"), "99.50");
  EXPECT_FALSE(response.Has("OpenBalance"));
  EXPECT_FALSE(response.Has("OpenBalanceDate"));
}

TEST(ListMod, ChangesWhatItGivesAndKeepsTheRest) {
  Books books;
  const QbxmlResponse before = books.Add("Customer", "<Name>Q</Name><Phone>1</Phone><Fax>2</Fax>");

  const QbxmlResponse after =
      books.Modify("Customer", before, "<Phone/><Email>q@example.com</Email>");

  EXPECT_EQ(after.Code(), "0");
  EXPECT_FALSE(after.Has("Phone"));
  EXPECT_EQ(after.Text("Fax"), "2");
  EXPECT_EQ(after.Text("Email"), "q@example.com");
  EXPECT_EQ(after.Text("ListID"), before.Text("ListID"));
}

TEST(ListMod, ChangesTheEditSequenceEvenWithinASecond) {
  Books books;
  const QbxmlResponse first = books.Find("Customer", "Zeller");

  const QbxmlResponse second = books.Modify("Customer", first, "<Phone>1</Phone>");
  const QbxmlResponse third = books.Modify("Customer", second, "<Phone>1</Phone>");

  EXPECT_NE(first.Text("EditSequence"), second.Text("EditSequence"));
  EXPECT_NE(second.Text("EditSequence"), third.Text("EditSequence"));
}

TEST(ListMod, SetsTheTimeOfTheChange) {
  Books books;
  const QbxmlResponse before = books.Find("Customer", "Zeller");
  books.oClock.Advance(std::chrono::hours(1));

  const QbxmlResponse after = books.Modify("Customer", before, "<Phone>1</Phone>");

  EXPECT_EQ(after.Text("TimeCreated"), "2010-01-05T09:03:07+00:00");
  EXPECT_EQ(after.Text("TimeModified"), "2010-01-05T10:03:07+00:00");
}

TEST(ListMod, IsRefusedWithAStaleEditSequenceAndReturnsTheObject) {
  Books books;
  const QbxmlResponse stale = books.Find("Customer", "Zeller");
  const QbxmlResponse fresh = books.Modify("Customer", stale, "<Phone>1</Phone>");

  const QbxmlResponse refused = books.Modify("Customer", stale, "<Phone>2</Phone>");

  EXPECT_EQ(refused.Code(), "3200");
  EXPECT_EQ(refused.Message(),
            "The provided edit sequence \"" + stale.Text("EditSequence") + "\" is out-of-date.");
  EXPECT_EQ(refused.Text("EditSequence"), fresh.Text("EditSequence"));
  EXPECT_EQ(books.Find("Customer", "Zeller").Text("Phone"), "1");
}

TEST(ListMod, RefusesAnObjectThatIsNotThere) {
  Books books;

  EXPECT_EQ(books
                .Tell("<CustomerModRq><CustomerMod><ListID>8000FFFF-1</ListID>"
                      "<EditSequence>1</EditSequence></CustomerMod></CustomerModRq>")
                .Code(),
            "3120");
}

TEST(ListMod, RenamesWhatLiesBelowAndWhatRefersToIt) {
  Books books;
  const QbxmlResponse invoice = books.Add(
      "Invoice", Books::Ref("CustomerRef", "Abbott:Barn") + Books::InvoiceLine("Hammer", "1"));

  books.Modify("Customer", books.Find("Customer", "Abbott"), "<Name>Quill</Name>");

  const QbxmlResponse job = books.Find("Customer", "Quill:Barn");
  EXPECT_EQ(job.Text("ParentRef/FullName"), "Quill");
  EXPECT_EQ(books.Query("Invoice", Books::Leaf("TxnID", invoice.Text("TxnID")))
                .Text("CustomerRef/FullName"),
            "Quill:Barn");
  EXPECT_EQ(books.Find("Customer", "Abbott:Barn").Code(), "500");
}

TEST(ListMod, MovesAnObjectUnderAnotherParent) {
  Books books;

  const QbxmlResponse moved = books.Modify("Customer", books.Find("Customer", "Abbott:Barn"),
                                           Books::Ref("ParentRef", "Zeller"));

  EXPECT_EQ(moved.Text("FullName"), "Zeller:Barn");
}

TEST(ListMod, RefusesToPutAnObjectBelowItself) {
  Books books;
  const QbxmlResponse parent = books.Find("Customer", "Abbott");

  EXPECT_EQ(books.Modify("Customer", parent, Books::Ref("ParentRef", "Abbott:Barn")).Code(),
            "3170");
  EXPECT_EQ(books.Modify("Customer", parent, Books::Ref("ParentRef", "Abbott")).Code(), "3170");
}

TEST(ListMod, RefusesANameInUse) {
  Books books;

  EXPECT_EQ(
      books.Modify("Customer", books.Find("Customer", "Zeller"), "<Name>ABBOTT</Name>").Code(),
      "3100");
}

TEST(ListMod, MayChangeTheLetterCaseOfAName) {
  Books books;

  EXPECT_EQ(books.Modify("Customer", books.Find("Customer", "Zeller"), "<Name>ZELLER</Name>")
                .Text("FullName"),
            "ZELLER");
}

TEST(ListMod, RefusesWhatIsOnlyReturned) {
  Books books;
  const QbxmlResponse customer = books.Find("Customer", "Zeller");

  for (const char* field :
       {"<Balance>1.00</Balance>", "<FullName>Q</FullName>", "<OpenBalance>1.00</OpenBalance>"}) {
    EXPECT_EQ(FailureOf([&] { books.Modify("Customer", customer, field); }), 0x80040400) << field;
  }
}

TEST(ListDel, RespondsWithWhatWasDeleted) {
  Books books;
  const std::string id = books.Find("Customer", "Zeller").Text("ListID");

  EXPECT_EQ(books.Ask("<ListDelRq><ListDelType>Customer</ListDelType><ListID>" + id +
                      "</ListID></ListDelRq>"),
            Framed("<ListDelRs statusCode=\"0\" statusSeverity=\"Info\" "
                   "statusMessage=\"Status OK\">\n"
                   "<ListDelType>Customer</ListDelType>\n"
                   "<ListID>" +
                   id +
                   "</ListID>\n"
                   "<TimeDeleted>2010-01-05T09:03:07+00:00</TimeDeleted>\n"
                   "<FullName>Zeller</FullName>\n"
                   "</ListDelRs>\n"));
}

TEST(ListDel, RefusesWhatIsInUse) {
  Books books;
  books.Add("Invoice", Books::Ref("CustomerRef", "Zeller") + Books::InvoiceLine("Hammer", "1"));

  for (const auto& [kind, name] : {std::pair<std::string, std::string>{"Customer", "Zeller"},
                                   {"Customer", "Abbott"},
                                   {"StandardTerms", "Net 30"},
                                   {"ItemInventory", "Hammer"},
                                   {"Account", "Stock"}}) {
    EXPECT_EQ(books.Delete("List", kind, books.Find(kind, name).Text("ListID")).Code(), "3160")
        << name;
  }
}

TEST(ListDel, RefusesWhatIsNotThere) {
  Books books;

  EXPECT_EQ(books.Delete("List", "Customer", "8000FFFF-1").Code(), "3120");
  EXPECT_EQ(books.Delete("List", "Customer", "nothing").Code(), "3000");
  EXPECT_EQ(FailureOf([&] { books.Delete("List", "Invoice", "1-1"); }), 0x80040400);
}

TEST(ListDel, ChangesNothingWhenItCannotBeSaved) {
  Books books;
  const std::string id = books.Find("Customer", "Zeller").Text("ListID");
  books.oStorage.iWriteError = platform::kDiskFull;

  EXPECT_EQ(books.Delete("List", "Customer", id).Code(), "3180");

  EXPECT_TRUE(books.Has("Zeller"));
}

// A value that is not of its field's type.
TEST(Values, AreRefusedWithTheStatusOfTheirType) {
  Books books;
  const std::string wide(30, '9');

  EXPECT_EQ(books.Add("Customer", "<Name>Q</Name><JobStartDate>2010-02-30</JobStartDate>").Code(),
            "3020");
  EXPECT_EQ(books.Add("Customer", "<Name>Q</Name><CreditLimit>much</CreditLimit>").Code(), "3040");
  EXPECT_EQ(books.Add("Customer", "<Name>Q</Name><CreditLimit>" + wide + "</CreditLimit>").Code(),
            "3040");
  EXPECT_EQ(books.Add("ItemSalesTax", "<Name>Q</Name><TaxRate>x</TaxRate>").Code(), "3050");
  EXPECT_EQ(books.Add("StandardTerms", "<Name>Q</Name><StdDueDays>1.5</StdDueDays>").Code(),
            "3065");
}

TEST(Values, ComeBackInQuickBooksForm) {
  Books books;

  const QbxmlResponse response =
      books.Add("Customer", "<Name>Q</Name><CreditLimit>1500.00</CreditLimit>");

  EXPECT_EQ(response.Text("CreditLimit"), "1500.00");
}

TEST(Versions, HideAndRefuseLaterFields) {
  Books books;
  const std::string fields = "<Name>Q</Name><JobTitle>Smith</JobTitle>";
  books.sVersion = "11.0";

  EXPECT_EQ(FailureOf([&] { books.Add("Customer", fields); }), 0x80040400);

  books.sVersion = "12.0";
  EXPECT_EQ(books.Add("Customer", fields).Text("JobTitle"), "Smith");
  books.sVersion = "11.0";
  EXPECT_FALSE(books.Find("Customer", "Q").Has("JobTitle"));
}

}  // namespace
}  // namespace ostrel
