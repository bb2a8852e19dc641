// Filters, iterators, and how much of an object a query returns.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

using testing::HasSubstr;

std::string Names(Books& books, const std::string& filters) {
  return books.Query("Customer", filters).All("FullName");
}

std::string NameFilter(const std::string& criterion, const std::string& name) {
  return "<NameFilter><MatchCriterion>" + criterion + "</MatchCriterion><Name>" + name +
         "</Name></NameFilter>";
}

TEST(ListQuery, FiltersByName) {
  Books books;

  EXPECT_EQ(Names(books, NameFilter("StartsWith", "BA")), "Abbott:Barn ");
  EXPECT_EQ(Names(books, NameFilter("Contains", "ell")), "Zeller ");
  EXPECT_EQ(Names(books, NameFilter("EndsWith", "TT")), "Abbott ");
}

TEST(ListQuery, FiltersByARangeOfNames) {
  Books books;

  EXPECT_EQ(Names(books, "<NameRangeFilter><FromName>b</FromName></NameRangeFilter>"),
            "Abbott:Barn Zeller ");
  EXPECT_EQ(Names(books,
                  "<NameRangeFilter><FromName>A</FromName><ToName>B</ToName>"
                  "</NameRangeFilter>"),
            "Abbott Abbott:Barn ");
}

TEST(ListQuery, FiltersByTheTimeOfTheLastChange) {
  Books books;
  books.oClock.Advance(std::chrono::hours(48));
  books.Modify("Customer", books.Find("Customer", "Zeller"), "<Phone>1</Phone>");

  EXPECT_EQ(Names(books, "<FromModifiedDate>2010-01-06</FromModifiedDate>"), "Zeller ");
  EXPECT_EQ(Names(books, "<ToModifiedDate>2010-01-05</ToModifiedDate>"), "Abbott Abbott:Barn ");
  EXPECT_EQ(Names(books, "<FromModifiedDate>2010-01-07T10:03:07+01:00</FromModifiedDate>"),
            "Zeller ");
  EXPECT_EQ(
      books.Query("Customer", "<FromModifiedDate>2010-01-07T10:03:08+01:00</FromModifiedDate>")
          .Code(),
      "1");
}

TEST(ListQuery, TakesBothEndsOfARangeOfChanges) {
  Books books;
  const std::string changed = books.Find("Customer", "Zeller").Text("TimeModified");

  EXPECT_EQ(Names(books, "<FromModifiedDate>" + changed + "</FromModifiedDate><ToModifiedDate>" +
                             changed + "</ToModifiedDate>"),
            "Abbott Abbott:Barn Zeller ");
  books.oClock.Advance(std::chrono::seconds(1));
  books.Modify("Customer", books.Find("Customer", "Zeller"), "<Phone>1</Phone>");
  EXPECT_EQ(Names(books, "<ToModifiedDate>" + changed + "</ToModifiedDate>"),
            "Abbott Abbott:Barn ");
}

TEST(TransactionQuery, TakesBothEndsOfARangeOfNumbers) {
  Books books;
  for (int i = 0; i < 12; ++i) books.InvoiceTwoHammers();
  const auto numbers = [&](const std::string& from, const std::string& to) {
    return books
        .Query("Invoice", "<RefNumberRangeFilter><FromRefNumber>" + from +
                              "</FromRefNumber><ToRefNumber>" + to +
                              "</ToRefNumber></RefNumberRangeFilter>")
        .All("RefNumber");
  };

  EXPECT_EQ(numbers("9", "11"), "9 10 11 ");
  EXPECT_EQ(numbers("10", "10"), "10 ");
  EXPECT_EQ(numbers("11", "10"), "");
  EXPECT_EQ(numbers("", "2"), "1 2 ");
  EXPECT_EQ(numbers("11", ""), "11 12 ");
}

TEST(ListQuery, ReturnsNoMoreThanAskedForOfSeveralKinds) {
  Books books;
  for (std::size_t most = 1; most <= 5; ++most) {
    const QbxmlResponse items =
        books.Query("Item", "<MaxReturned>" + std::to_string(most) + "</MaxReturned>");
    EXPECT_EQ(items.Count(), std::min<std::size_t>(most, 5));
  }
}

TEST(TransactionQuery, FindsEachTransactionOnceHoweverOftenItsCustomerIsNamed) {
  Books books;
  books.InvoiceTwoHammers();
  std::string names;
  for (int i = 0; i < 100; ++i) names += "<FullName>Abbott</FullName>";

  EXPECT_EQ(books.Query("Invoice", "<EntityFilter>" + names + "</EntityFilter>").Count(), 1u);
}

TEST(ListQuery, FiltersByTotalBalance) {
  Books books;
  books.InvoiceTwoHammers();
  const auto filter = [](const std::string& op, const std::string& amount) {
    return "<TotalBalanceFilter><Operator>" + op + "</Operator><Amount>" + amount +
           "</Amount></TotalBalanceFilter>";
  };

  EXPECT_EQ(Names(books, filter("GreaterThan", "0.00")), "Abbott ");
  EXPECT_EQ(Names(books, filter("GreaterThanEqual", "25.00")), "Abbott ");
  EXPECT_EQ(Names(books, filter("LessThan", "25.00")), "Abbott:Barn Zeller ");
}

TEST(ListQuery, RefusesABadDate) {
  Books books;

  EXPECT_EQ(books.Query("Customer", "<FromModifiedDate>yesterday</FromModifiedDate>").Code(),
            "3010");
}

TEST(ListQuery, FindsItemsOfAllKinds) {
  Books books;

  const std::string response = books.Ask("<ItemQueryRq/>");

  for (const char* ret :
       {"ItemServiceRet", "ItemInventoryRet", "ItemDiscountRet", "ItemSalesTaxRet"}) {
    EXPECT_THAT(response, HasSubstr(ret));
  }
  EXPECT_EQ(QbxmlResponse(response).Name(), "ItemQueryRs");
}

TEST(Query, ReturnsTheElementsAskedFor) {
  Books books;

  EXPECT_EQ(books
                .Query("Customer",
                       "<FullName>Abbott</FullName>"
                       "<IncludeRetElement>Balance</IncludeRetElement>"
                       "<IncludeRetElement>Name</IncludeRetElement>")
                .Order(),
            "Name Balance ");
}

TEST(Query, TakesTheOwnersOfExtensionsThatItDoesNotHave) {
  Books books;

  EXPECT_EQ(books.Query("Customer", "<FullName>Abbott</FullName><OwnerID>0</OwnerID>").Code(), "0");
}

TEST(Query, CountsWhatItReturns) {
  Books books;

  const QbxmlResponse both = books.Query("Customer", "", "metaData='MetaDataAndResponseData'");
  const QbxmlResponse only = books.Query("Customer", "", "metaData='MetaDataOnly'");
  const QbxmlResponse none = books.Query("Customer", "", "metaData='NoMetaData'");

  EXPECT_EQ(both.Attribute("retCount"), "3");
  EXPECT_EQ(both.Count(), 3u);
  EXPECT_EQ(only.Attribute("retCount"), "3");
  EXPECT_EQ(only.Count(), 0u);
  EXPECT_EQ(none.Attribute("retCount"), "");
}

TEST(Query, RefusesAttributesThatItDoesNotHave) {
  Books books;
  const std::string two = "<MaxReturned>2</MaxReturned>";

  for (const char* attributes :
       {"metaData='Some'", "iterator='Begin'", "iterator='Continue'", "iteratorID='{1}'",
        "iterator='Start' iteratorID='{1}'", "other='1'"}) {
    EXPECT_EQ(FailureOf([&] { books.Query("Customer", two, attributes); }), 0x80040400)
        << attributes;
  }
  EXPECT_EQ(FailureOf([&] { books.Query("Customer", "", "iterator='Start'"); }), 0x80040400);
  EXPECT_EQ(FailureOf([&] { books.Query("Host", "", "metaData='NoMetaData'"); }), 0x80040400);
}

TEST(Query, HasNoIteratorsBeforeVersionFive) {
  Books books;
  books.sVersion = "4.1";

  EXPECT_EQ(FailureOf([&] {
              books.Query("Customer", "<MaxReturned>2</MaxReturned>", "iterator='Start'");
            }),
            0x80040400);
}

std::string Iterating(const std::string& verb, const QbxmlResponse& page) {
  return "iterator='" + verb + "' iteratorID='" + page.Attribute("iteratorID") + "'";
}

class IteratorTest : public testing::Test {
 protected:
  QbxmlResponse Start() { return oBooks.Query("Customer", kTwo, "iterator='Start'"); }
  QbxmlResponse Continue(const QbxmlResponse& page) {
    return oBooks.Query("Customer", kTwo, Iterating("Continue", page));
  }

  static constexpr char kTwo[] = "<MaxReturned>2</MaxReturned>";
  Books oBooks;
};

TEST_F(IteratorTest, ReturnsEveryObjectOnce) {
  const QbxmlResponse first = Start();
  const QbxmlResponse second = Continue(first);

  EXPECT_EQ(first.All("FullName"), "Abbott Abbott:Barn ");
  EXPECT_EQ(first.Attribute("iteratorRemainingCount"), "1");
  EXPECT_EQ(second.All("FullName"), "Zeller ");
  EXPECT_EQ(second.Attribute("iteratorRemainingCount"), "0");
  EXPECT_EQ(second.Attribute("iteratorID"), first.Attribute("iteratorID"));
}

TEST_F(IteratorTest, HasAnIdInTheFormOfAnIdentifier) {
  const std::string id = Start().Attribute("iteratorID");

  ASSERT_EQ(id.size(), 38u);
  EXPECT_EQ(id.front(), '{');
  EXPECT_EQ(id.back(), '}');
  EXPECT_NE(id, Start().Attribute("iteratorID"));
}

TEST_F(IteratorTest, EndsBehindTheLastObject) {
  const QbxmlResponse first = Start();
  Continue(first);

  EXPECT_EQ(Continue(first).Code(), "3391");
}

TEST_F(IteratorTest, EndsWhenItIsStopped) {
  const QbxmlResponse first = Start();

  EXPECT_EQ(oBooks.Query("Customer", "", Iterating("Stop", first)).Code(), "0");

  EXPECT_EQ(Continue(first).Code(), "3391");
}

TEST_F(IteratorTest, EndsWithItsSession) {
  const QbxmlResponse first = Start();
  oBooks.oProcessor.EndSession(oBooks.sTicket);
  oBooks.sTicket = oBooks.oProcessor.BeginSession(Books::kPath, FileMode::kDoNotCare);

  EXPECT_EQ(Continue(first).Code(), "3391");
}

TEST_F(IteratorTest, BelongsToItsQuery) {
  const QbxmlResponse first = Start();

  EXPECT_EQ(oBooks.Query("Vendor", kTwo, Iterating("Continue", first)).Code(), "3391");
}

TEST_F(IteratorTest, SeesWhatItStartedWithWhateverIsAddedOrDeleted) {
  const QbxmlResponse first = Start();
  oBooks.Delete("List", "Customer", oBooks.Find("Customer", "Zeller").Text("ListID"));
  oBooks.Add("Customer", "<Name>Zulu</Name>");

  const QbxmlResponse second = Continue(first);

  EXPECT_EQ(second.Code(), "1");
  EXPECT_EQ(second.Count(), 0u);
  EXPECT_EQ(second.Attribute("iteratorRemainingCount"), "0");
}

TEST_F(IteratorTest, IsForgottenWhenTooManyAreOpen) {
  const QbxmlResponse first = Start();
  for (int i = 0; i < 100; ++i) Start();

  EXPECT_EQ(Continue(first).Code(), "3391");
}

class TransactionQueryTest : public testing::Test {
 protected:
  TransactionQueryTest() {
    Enter("2009-12-31", "A1", "Abbott");
    Enter("2010-01-04", "A2", "Abbott:Barn");
    Enter("2010-01-05", "10", "Zeller");
  }
  void Enter(const std::string& date, const std::string& number, const std::string& customer) {
    oBooks.Add("Invoice", Books::Ref("CustomerRef", customer) + Books::Leaf("TxnDate", date) +
                              Books::Leaf("RefNumber", number) + Books::InvoiceLine("Hammer", "1"));
  }
  std::string Numbers(const std::string& filters) {
    return oBooks.Query("Invoice", filters).All("RefNumber");
  }
  std::string OnDates(const std::string& range) {
    return Numbers("<TxnDateRangeFilter>" + range + "</TxnDateRangeFilter>");
  }
  std::string With(const std::string& entity) {
    return Numbers("<EntityFilter>" + entity + "</EntityFilter>");
  }

  Books oBooks;
};

TEST_F(TransactionQueryTest, ReturnsInTheOrderOfDates) {
  Enter("2009-06-01", "B7", "Zeller");

  EXPECT_EQ(Numbers(""), "B7 A1 A2 10 ");
}

TEST_F(TransactionQueryTest, FindsById) {
  const std::string id = oBooks.Query("Invoice").Text("TxnID", 1);

  EXPECT_EQ(Numbers(Books::Leaf("TxnID", id)), "A2 ");
  EXPECT_EQ(oBooks.Query("Invoice", "<TxnID>FFFF-1</TxnID>").Code(), "500");
  EXPECT_EQ(oBooks.Query("Invoice", "<TxnID>A2</TxnID>").Code(), "3000");
}

TEST_F(TransactionQueryTest, FindsByRefNumberInAnyLetterCase) {
  EXPECT_EQ(Numbers("<RefNumber>a2</RefNumber>"), "A2 ");
  EXPECT_EQ(Numbers("<RefNumberCaseSensitive>a2</RefNumberCaseSensitive>"), "");
  EXPECT_EQ(Numbers("<RefNumberCaseSensitive>A2</RefNumberCaseSensitive>"), "A2 ");
}

TEST_F(TransactionQueryTest, FindsAllOfARefNumber) {
  Enter("2010-01-05", "a1", "Zeller");

  EXPECT_EQ(Numbers("<RefNumber>A1</RefNumber>"), "A1 a1 ");
}

TEST_F(TransactionQueryTest, FiltersByDate) {
  EXPECT_EQ(OnDates("<FromTxnDate>2010-01-01</FromTxnDate>"), "A2 10 ");
  EXPECT_EQ(OnDates("<ToTxnDate>2010-01-04</ToTxnDate>"), "A1 A2 ");
  EXPECT_EQ(OnDates("<FromTxnDate>2010-01-04</FromTxnDate><ToTxnDate>2010-01-04</ToTxnDate>"),
            "A2 ");
}

TEST_F(TransactionQueryTest, FiltersByTheNameOfADateRange) {
  EXPECT_EQ(OnDates("<DateMacro>Today</DateMacro>"), "10 ");
  EXPECT_EQ(OnDates("<DateMacro>ThisCalendarYear</DateMacro>"), "A2 10 ");
  EXPECT_EQ(OnDates("<DateMacro>LastCalendarYear</DateMacro>"), "A1 ");
  EXPECT_EQ(OnDates("<DateMacro>All</DateMacro>"), "A1 A2 10 ");
}

TEST_F(TransactionQueryTest, FiltersByEntity) {
  EXPECT_EQ(With("<FullName>Abbott</FullName>"), "A1 ");
  EXPECT_EQ(With("<FullName>Zeller</FullName><FullName>Abbott</FullName>"), "A1 10 ");
  EXPECT_EQ(With("<FullNameWithChildren>Abbott</FullNameWithChildren>"), "A1 A2 ");
}

TEST_F(TransactionQueryTest, RefusesAnEntityThatIsNotThere) {
  EXPECT_EQ(
      oBooks.Query("Invoice", "<EntityFilter><FullName>Nobody</FullName></EntityFilter>").Code(),
      "3140");
}

TEST_F(TransactionQueryTest, FiltersByPartsAndRangesOfRefNumbers) {
  EXPECT_EQ(Numbers("<RefNumberFilter><MatchCriterion>StartsWith</MatchCriterion>"
                    "<RefNumber>a</RefNumber></RefNumberFilter>"),
            "A1 A2 ");
  EXPECT_EQ(Numbers("<RefNumberRangeFilter><FromRefNumber>9</FromRefNumber>"
                    "<ToRefNumber>11</ToRefNumber></RefNumberRangeFilter>"),
            "10 ");
}

TEST_F(TransactionQueryTest, FiltersByWhetherTheyArePaid) {
  oBooks.Pay(oBooks.Query("Invoice", "<RefNumber>A1</RefNumber>"), "12.50");

  EXPECT_EQ(Numbers("<PaidStatus>PaidOnly</PaidStatus>"), "A1 ");
  EXPECT_EQ(Numbers("<PaidStatus>NotPaidOnly</PaidStatus>"), "A2 10 ");
}

TEST_F(TransactionQueryTest, ReturnsLinesOnlyWhenAskedFor) {
  EXPECT_FALSE(oBooks.Query("Invoice").Has("InvoiceLineRet"));
  EXPECT_TRUE(
      oBooks.Query("Invoice", "<IncludeLineItems>true</IncludeLineItems>").Has("InvoiceLineRet"));
}

TEST_F(TransactionQueryTest, RefusesTwoFiltersThatExcludeEachOther) {
  EXPECT_EQ(FailureOf([&] { Numbers("<ModifiedDateRangeFilter/><TxnDateRangeFilter/>"); }),
            0x80040400);
}

}  // namespace
}  // namespace ostrel
