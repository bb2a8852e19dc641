#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kAddJo[] =
    "<CustomerAddRq requestID='1'><CustomerAdd><Name>Jo</Name></CustomerAdd></CustomerAddRq>";
constexpr char kAddKim[] =
    "<CustomerAddRq requestID='1'><CustomerAdd><Name>Kim</Name></CustomerAdd></CustomerAddRq>";

// A client that names its requests.
class CarefulBooks : public Books {
 public:
  std::string AskAs(const std::string& ids, const std::string& messages) {
    return Send("<?xml version=\"1.0\"?><?qbxml version=\"13.0\"?><QBXML><QBXMLMsgsRq " + ids +
                " onError=\"stopOnError\">" + messages + "</QBXMLMsgsRq></QBXML>");
  }
  std::size_t Customers() { return Query("Customer").Count(); }
};

TEST(MessageSets, AreTakenOnce) {
  CarefulBooks books;

  const std::string first = books.AskAs("newMessageSetID='A1'", kAddJo);
  EXPECT_THAT(first, HasSubstr("<QBXMLMsgsRs newMessageSetID=\"A1\" messageSetStatusCode=\"0\">\n"
                               "<CustomerAddRs requestID=\"1\" statusCode=\"0\""));
  EXPECT_EQ(books.AskAs("newMessageSetID='A1'", kAddJo), first);
  EXPECT_EQ(books.Customers(), 4u);
}

TEST(MessageSets, AreNotTakenAgainAfterARestartOrAKill) {
  CarefulBooks books;
  const std::string first = books.AskAs("newMessageSetID='A1'", kAddJo);

  CarefulBooks killed;
  killed.OpenAfterKillOf(books);
  EXPECT_EQ(killed.AskAs("newMessageSetID='A1'", kAddJo), first);
  killed.File();
  EXPECT_EQ(killed.AskAs("newMessageSetID='A1'", kAddJo), first);
  EXPECT_EQ(killed.Customers(), 4u);
}

TEST(MessageSets, SayWhenAnIdWasGivenToAnotherRequest) {
  CarefulBooks books;
  books.AskAs("newMessageSetID='A1'", kAddJo);

  EXPECT_THAT(books.AskAs("newMessageSetID='A1'", kAddKim),
              HasSubstr("messageSetStatusCode=\"9001\""));
  EXPECT_FALSE(books.Has("Kim"));
}

TEST(MessageSets, GiveTheirResponsesToWhoAsksForThem) {
  CarefulBooks books;
  books.AskAs("newMessageSetID='A1'", kAddJo);

  const std::string kept = books.AskAs("oldMessageSetID='A1'", "");
  EXPECT_THAT(kept, HasSubstr("messageSetStatusCode=\"0\""));
  EXPECT_THAT(kept, HasSubstr("<FullName>Jo</FullName>"));
  EXPECT_EQ(books.AskAs("oldMessageSetID='A1'", kAddKim), kept);
  EXPECT_FALSE(books.Has("Kim"));
}

TEST(MessageSets, SayThatTheyAreNotKnown) {
  CarefulBooks books;

  EXPECT_THAT(books.AskAs("oldMessageSetID='A1'", kAddJo),
              HasSubstr("messageSetStatusCode=\"600\""));
  EXPECT_FALSE(books.Has("Jo"));
}

TEST(MessageSets, GiveWayToANewOne) {
  CarefulBooks books;
  books.AskAs("newMessageSetID='A1'", kAddJo);

  EXPECT_THAT(books.AskAs("newMessageSetID='A2' oldMessageSetID='A1'", kAddKim),
              HasSubstr("newMessageSetID=\"A2\" messageSetStatusCode=\"0\""));
  EXPECT_TRUE(books.Has("Kim"));
  EXPECT_THAT(books.AskAs("oldMessageSetID='A1'", ""), HasSubstr("messageSetStatusCode=\"600\""));
  EXPECT_THAT(books.AskAs("oldMessageSetID='A2'", ""), HasSubstr("<FullName>Kim</FullName>"));
}

TEST(MessageSets, AreTakenAnewWhenTheyAreCleared) {
  CarefulBooks books;
  books.AskAs("newMessageSetID='A1'", kAddJo);

  EXPECT_THAT(books.AskAs("newMessageSetID='A1' oldMessageSetID='A1'", kAddJo),
              HasSubstr("statusCode=\"3100\""));
}

TEST(MessageSets, KeepStatusesAloneWhenTheyAreToldTo) {
  CarefulBooks books;

  const std::string first = books.AskAs("newMessageSetID='A1' responseData='includeNone'", kAddJo);
  EXPECT_THAT(first, HasSubstr("<FullName>Jo</FullName>"));
  const std::string kept = books.AskAs("oldMessageSetID='A1'", "");
  EXPECT_THAT(kept, HasSubstr("<CustomerAddRs requestID=\"1\" statusCode=\"0\""));
  EXPECT_THAT(kept, Not(HasSubstr("<FullName>")));
}

TEST(MessageSets, AreNotTakenAgainWhenTheirProcessWasKilledBetween) {
  CarefulBooks books;
  books.AskAs("newMessageSetID='A1'", kAddJo);
  std::string& journal = books.oStorage.Files[Text(CarefulBooks::kPath) + u".journal"];
  journal.resize(journal.rfind("<?record "));  // that of the responses

  CarefulBooks other;
  other.OpenAfterKillOf(books);
  EXPECT_THAT(other.AskAs("newMessageSetID='A1'", kAddJo),
              HasSubstr("messageSetStatusCode=\"9002\""));
  EXPECT_TRUE(other.Has("Jo"));
}

TEST(MessageSets, HaveShortIds) {
  CarefulBooks books;

  const std::string id(24, 'x');
  EXPECT_THAT(books.AskAs("newMessageSetID='" + id + "y'", kAddJo),
              HasSubstr("messageSetStatusCode=\"9004\""));
  EXPECT_FALSE(books.Has("Jo"));
  books.AskAs("newMessageSetID='" + id + "'", kAddJo);
  EXPECT_TRUE(books.Has("Jo"));
}

TEST(MessageSets, AreNotProcessedWhenTheyCannotBeKept) {
  CarefulBooks books;
  books.oStorage.iWriteError = 5;

  EXPECT_THAT(books.AskAs("newMessageSetID='A1'", kAddJo),
              HasSubstr("messageSetStatusCode=\"9005\""));
}

TEST(MessageSets, AreForgottenAfterAHundredOthers) {
  CarefulBooks books;
  for (int i = 0; i <= 100; ++i) {
    books.AskAs("newMessageSetID='" + std::to_string(i) + "'", "<HostQueryRq/>");
  }

  EXPECT_THAT(books.AskAs("oldMessageSetID='0'", ""), HasSubstr("messageSetStatusCode=\"600\""));
  EXPECT_THAT(books.AskAs("oldMessageSetID='1'", ""), HasSubstr("messageSetStatusCode=\"0\""));
}

TEST(MessageSets, KeepLongResponses) {
  CarefulBooks books;
  std::string messages;
  for (int i = 0; i < 300; ++i) messages += "<CustomerQueryRq/>";

  const std::string first = books.AskAs("newMessageSetID='A1'", messages);
  EXPECT_GT(first.size(), 300u * 1024);
  EXPECT_EQ(books.AskAs("newMessageSetID='A1'", messages), first);
  books.File();
  EXPECT_EQ(books.AskAs("newMessageSetID='A1'", messages), first);
}

TEST(MessageSets, HaveNoOtherAttributes) {
  CarefulBooks books;

  EXPECT_EQ(FailureOf([&] { books.AskAs("messageSetID='A1'", kAddJo); }), 0x80040400);
  EXPECT_EQ(FailureOf([&] { books.AskAs("responseData='some'", kAddJo); }), 0x80040400);
  EXPECT_EQ(FailureOf([&] { books.AskAs("newMessageSetID='A1'", ""); }), 0x80040400);
}

// Sends an invoice that has a name, and behind it what uses that.
std::string AndThen(const std::string& message) {
  return "<InvoiceAddRq><InvoiceAdd defMacro='TxnID:I'><CustomerRef><FullName>Abbott</FullName>"
         "</CustomerRef><InvoiceLineAdd><ItemRef><FullName>Hammer</FullName></ItemRef>"
         "<Quantity>1</Quantity></InvoiceLineAdd><InvoiceLineAdd defMacro='TxnLineID:L'>"
         "<ItemRef><FullName>Hammer</FullName></ItemRef><Quantity>2</Quantity></InvoiceLineAdd>"
         "</InvoiceAdd></InvoiceAddRq>" +
         message;
}

std::string PaymentOf(const std::string& macro) {
  return "<ReceivePaymentAddRq><ReceivePaymentAdd><CustomerRef><FullName>Abbott</FullName>"
         "</CustomerRef><TotalAmount>10.00</TotalAmount><AppliedToTxnAdd><TxnID useMacro='" +
         macro +
         "'/><PaymentAmount>10.00</PaymentAmount></AppliedToTxnAdd></ReceivePaymentAdd>"
         "</ReceivePaymentAddRq>";
}

TEST(MessageMacros, StandForTheTransactionThatARequestAdds) {
  Books books;

  const std::string response = books.Ask(AndThen(PaymentOf("TxnID:I")));
  EXPECT_EQ(QbxmlResponse(response, 1).Code(), "0");
  EXPECT_EQ(QbxmlResponse(response, 1).Text("AppliedToTxnRet/TxnID"),
            QbxmlResponse(response).Text("TxnID"));
}

TEST(MessageMacros, AreRefusedWhenTheyStandForNothing) {
  Books books;

  EXPECT_EQ(QbxmlResponse(books.Ask(AndThen(PaymentOf("TxnID:Other"))), 1).Code(), "3000");
  EXPECT_EQ(QbxmlResponse(books.Ask(PaymentOf("TxnID:I"))).Code(), "3000");
}

TEST(MessageMacros, StandForALineToo) {
  Books books;

  const std::string response =
      books.Ask(AndThen("<ClearedStatusModRq><ClearedStatusMod><TxnID useMacro='TxnID:I'/>"
                        "<TxnLineID useMacro='TxnLineID:L'/><ClearedStatus>Cleared</ClearedStatus>"
                        "</ClearedStatusMod></ClearedStatusModRq>"));
  EXPECT_NE(QbxmlResponse(response, 1).Code(), "3000");
}

}  // namespace
}  // namespace ostrel::simulator
