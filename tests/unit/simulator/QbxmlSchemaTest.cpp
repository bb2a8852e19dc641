#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/SchemaValidation.h"
#include "simulator/messages/Messages.h"
#include "simulator/messages/QbxmlEngine.h"
#include "simulator/values/Status.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

std::string Contents(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class QbxmlSchemaTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    pFolder = new ScratchFolder;
    pFolder->Write(u"qbxml.xsd", QbxmlSchema());
  }
  static void TearDownTestSuite() { delete pFolder; }

  static bool IsValid(std::string_view request) {
    const auto fault = platform::ValidateXml(FromUtf8(request), pFolder->Path(u"qbxml.xsd"));
    sReason = ToUtf8(fault.reason);
    return fault.errorCode == 0;
  }
  static std::string Request(const std::string& messages) {
    return "<?xml version=\"1.0\"?><?qbxml version=\"13.0\"?><QBXML>"
           "<QBXMLMsgsRq onError=\"stopOnError\">" +
           messages + "</QBXMLMsgsRq></QBXML>";
  }
  static bool IsUnderstood(std::string_view request) {
    Books books;
    const auto failure = FailureOf([&] { books.Send(request); });
    return failure != static_cast<std::uint32_t>(Hresult::kParseError);
  }

  static inline ScratchFolder* pFolder = nullptr;
  static inline std::string sReason;
};

TEST_F(QbxmlSchemaTest, IsTheOneBesideTheSamples) {
  const std::string committed = Contents(OSTREL_TEST_DATA "/../../samples/qbxmlops30.xsd");

  EXPECT_TRUE(committed == QbxmlSchema())
      << "The tables have changed: ostrel-company --schema samples/qbxmlops30.xsd";
}

TEST_F(QbxmlSchemaTest, KnowsEveryMessage) {
  for (const Message* message : AllMessages()) {
    const std::string name(message->name);
    IsValid(Request("<" + name + "><NoSuchElement/></" + name + ">"));

    EXPECT_EQ(sReason.find(name + "': This element is not expected"), std::string::npos);
  }
  EXPECT_FALSE(IsValid(Request("<NoSuchRq/>")));
}

class Understood : public QbxmlSchemaTest, public testing::WithParamInterface<const char*> {};

TEST_P(Understood, ByTheEngineIsValid) {
  const std::string request = Request(GetParam());

  EXPECT_TRUE(IsUnderstood(request));
  EXPECT_TRUE(IsValid(request)) << sReason;
}

INSTANTIATE_TEST_SUITE_P(
    QbxmlSchema, Understood,
    testing::Values(
        "<HostQueryRq requestID='1'/>", "<CompanyQueryRq>\n</CompanyQueryRq>",
        "<CustomerAddRq>\n<CustomerAdd>\n<Name> Jo </Name>\n<IsActive> 1 </IsActive>"
        "<BillAddress><Addr1/><City>Napa</City></BillAddress><TermsRef/>"
        "<JobStatus>\nNone </JobStatus></CustomerAdd><IncludeRetElement>Name</IncludeRetElement>"
        "<IncludeRetElement>ListID</IncludeRetElement></CustomerAddRq>",
        "<CustomerModRq><CustomerMod><ListID>nonsense</ListID><EditSequence>1</EditSequence>"
        "<Phone>555</Phone></CustomerMod></CustomerModRq>",
        "<CustomerQueryRq metaData='MetaDataOnly'><ListID/><ListID>8-1</ListID></CustomerQueryRq>",
        "<CustomerQueryRq><FullName>A</FullName><FullName>B</FullName><OwnerID>0</OwnerID>"
        "</CustomerQueryRq>",
        "<CustomerQueryRq iterator='Start'><MaxReturned> 10 </MaxReturned>"
        "<ActiveStatus>All</ActiveStatus><FromModifiedDate>soon</FromModifiedDate><NameFilter>"
        "<MatchCriterion>Contains</MatchCriterion><Name>a</Name></NameFilter><TotalBalanceFilter>"
        "<Operator>Equal</Operator><Amount>five</Amount></TotalBalanceFilter></CustomerQueryRq>",
        "<ItemQueryRq><NameRangeFilter><FromName>A</FromName></NameRangeFilter></ItemQueryRq>",
        "<ItemServiceAddRq><ItemServiceAdd><Name>Paint</Name><SalesOrPurchase>"
        "<PricePercent>5</PricePercent><AccountRef><FullName>Sales</FullName></AccountRef>"
        "</SalesOrPurchase></ItemServiceAdd></ItemServiceAddRq>",
        "<InvoiceAddRq><InvoiceAdd><CustomerRef><ListID>8-1</ListID><FullName>A</FullName>"
        "</CustomerRef><InvoiceLineAdd/><InvoiceLineAdd><ItemRef><FullName>Hammer</FullName>"
        "</ItemRef><RatePercent>5</RatePercent></InvoiceLineAdd></InvoiceAdd></InvoiceAddRq>",
        "<InvoiceQueryRq><TxnDateRangeFilter><DateMacro>Today</DateMacro></TxnDateRangeFilter>"
        "<EntityFilter><FullNameWithChildren>A</FullNameWithChildren></EntityFilter>"
        "<PaidStatus>All</PaidStatus><IncludeLineItems>true</IncludeLineItems></InvoiceQueryRq>",
        "<BillQueryRq><RefNumberCaseSensitive>A</RefNumberCaseSensitive></BillQueryRq>",
        "<ReceivePaymentAddRq><ReceivePaymentAdd><CustomerRef><FullName>A</FullName></CustomerRef>"
        "<TotalAmount>1</TotalAmount><AppliedToTxnAdd><TxnID>1-1</TxnID><PaymentAmount>1"
        "</PaymentAmount></AppliedToTxnAdd></ReceivePaymentAdd></ReceivePaymentAddRq>",
        "<JournalEntryAddRq><JournalEntryAdd>"
        "<JournalCreditLine><AccountRef><FullName>A</FullName></AccountRef></JournalCreditLine>"
        "<JournalDebitLine><AccountRef><FullName>A</FullName></AccountRef></JournalDebitLine>"
        "<JournalCreditLine><AccountRef><FullName>A</FullName></AccountRef></JournalCreditLine>"
        "</JournalEntryAdd></JournalEntryAddRq>",
        "<ListDelRq><ListDelType>Customer</ListDelType><ListID>8-1</ListID></ListDelRq>"
        "<TxnDelRq><TxnDelType>Invoice</TxnDelType><TxnID>8-1</TxnID></TxnDelRq>"));

class NotUnderstood : public QbxmlSchemaTest, public testing::WithParamInterface<const char*> {};

TEST_P(NotUnderstood, ByTheEngineIsInvalid) {
  const std::string request = Request(GetParam());

  EXPECT_FALSE(IsUnderstood(request));
  EXPECT_FALSE(IsValid(request));
}

INSTANTIATE_TEST_SUITE_P(
    QbxmlSchema, NotUnderstood,
    testing::Values(
        "<CustomerRq/>", "text", "<HostQueryRq>text</HostQueryRq>",
        "<HostQueryRq iterator='Start'/>", "<CustomerQueryRq iterator='Go'/>",
        "<CustomerQueryRq unknown='1'/>", "<CustomerAddRq/>",
        "<CustomerAddRq><CustomerAdd/></CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Name kind='x'>Jo</Name></CustomerAdd></CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Name>Jo</Name>text</CustomerAdd></CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Phone>5</Phone><Name>Jo</Name></CustomerAdd></CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Name>Jo</Name><Name>Jo</Name></CustomerAdd></CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Name>Jo</Name><Balance>1</Balance></CustomerAdd>"
        "</CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Name>Jo</Name><IsActive>yes</IsActive></CustomerAdd>"
        "</CustomerAddRq>",
        "<CustomerAddRq><CustomerAdd><Name>Jo</Name><JobStatus>Lost</JobStatus></CustomerAdd>"
        "</CustomerAddRq>",
        "<CustomerModRq><CustomerMod><ListID>8-1</ListID></CustomerMod></CustomerModRq>",
        "<CustomerQueryRq><MaxReturned>0</MaxReturned></CustomerQueryRq>",
        "<CustomerQueryRq><MaxReturned>+5</MaxReturned></CustomerQueryRq>",
        "<CustomerQueryRq><MaxReturned>1234567890</MaxReturned></CustomerQueryRq>",
        "<CustomerQueryRq><ListID>8-1</ListID><FullName>A</FullName></CustomerQueryRq>",
        "<CustomerQueryRq><FullName>A</FullName><ActiveStatus>All</ActiveStatus></CustomerQueryRq>",
        "<CustomerQueryRq><NameFilter><MatchCriterion>Contains</MatchCriterion><Name>a</Name>"
        "</NameFilter><NameRangeFilter/></CustomerQueryRq>",
        "<InvoiceAddRq><InvoiceAdd><Memo>5</Memo></InvoiceAdd></InvoiceAddRq>",
        "<JournalEntryAddRq><JournalEntryAdd/></JournalEntryAddRq>",
        "<SalesOrderAddRq><SalesOrderAdd><CustomerRef/></SalesOrderAdd></SalesOrderAddRq>",
        "<ReceivePaymentAddRq><ReceivePaymentAdd><CustomerRef/></ReceivePaymentAdd>"
        "</ReceivePaymentAddRq>",
        "<VehicleQueryRq iterator='Start'><MaxReturned>1</MaxReturned></VehicleQueryRq>",
        "<CustomerTypeModRq/>",
        "<InvoiceAddRq><InvoiceAdd><CustomerRef><FullName>A</FullName></CustomerRef>"
        "<InvoiceLineAdd><Rate>1</Rate><RatePercent>1</RatePercent></InvoiceLineAdd></InvoiceAdd>"
        "</InvoiceAddRq>",
        "<InvoiceQueryRq><TxnDateRangeFilter><FromTxnDate>2010-01-01</FromTxnDate>"
        "<DateMacro>Today</DateMacro></TxnDateRangeFilter></InvoiceQueryRq>",
        "<ItemServiceAddRq><ItemServiceAdd><Name>P</Name></ItemServiceAdd></ItemServiceAddRq>",
        "<ItemServiceModRq><ItemServiceMod><ListID/><EditSequence/><SalesOrPurchase/>"
        "</ItemServiceMod></ItemServiceModRq>",
        "<ListDelRq><ListDelType>Invoice</ListDelType><ListID>8-1</ListID></ListDelRq>"));

TEST_F(QbxmlSchemaTest, TheFrameIsCheckedToo) {
  const std::string good = Request("<HostQueryRq/>");
  ASSERT_TRUE(IsValid(good)) << sReason;

  for (const auto& [from, to] :
       std::initializer_list<std::pair<std::string, std::string>>{{" onError=\"stopOnError\"", ""},
                                                                  {"stopOnError", "goOn"},
                                                                  {"QBXMLMsgsRq", "QBXMLMsgsRs"},
                                                                  {"<QBXML>", "<QBXML a='1'>"}}) {
    std::string bad = good;
    for (std::size_t at = 0; (at = bad.find(from, at)) != std::string::npos; at += to.size()) {
      bad.replace(at, from.size(), to);
    }
    EXPECT_FALSE(IsValid(bad)) << bad;
  }
}

// The fuzzer's seeds hold requests of every sort, well-formed or not.
TEST_F(QbxmlSchemaTest, WhatTheEngineTakesFromTheSeedsIsValid) {
  int taken = 0;

  for (const auto& entry :
       std::filesystem::directory_iterator(OSTREL_TEST_DATA "/../fuzz/corpus/qbxml")) {
    const std::string request = Contents(entry.path());
    if (!IsUnderstood(request)) continue;
    EXPECT_TRUE(IsValid(request)) << entry.path() << ": " << sReason;
    ++taken;
  }

  EXPECT_GE(taken, 10);
}

}  // namespace
}  // namespace ostrel::simulator
