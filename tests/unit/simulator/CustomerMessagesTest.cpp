#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/simulator/Conversation.h"

namespace ostrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kZimmerRet[] =
    "<CustomerRet>\n"
    "<ListID>80000001-1262304000</ListID>\n"
    "<TimeCreated>2010-01-01T00:00:00+00:00</TimeCreated>\n"
    "<TimeModified>2010-01-02T00:00:00+00:00</TimeModified>\n"
    "<EditSequence>1262390400</EditSequence>\n"
    "<Name>Zimmer</Name>\n"
    "<FullName>Zimmer</FullName>\n"
    "<IsActive>true</IsActive>\n"
    "<Sublevel>0</Sublevel>\n"
    "<Balance>12.50</Balance>\n"
    "<TotalBalance>12.50</TotalBalance>\n"
    "<JobStatus>None</JobStatus>\n"
    "</CustomerRet>\n";

std::string Query(std::string_view content) {
  return "<CustomerQueryRq requestID=\"1\">" + std::string(content) + "</CustomerQueryRq>";
}

std::string Add(std::string_view fields) {
  return "<CustomerAddRq requestID=\"1\"><CustomerAdd>" + std::string(fields) +
         "</CustomerAdd></CustomerAddRq>";
}

std::string Named(std::string_view name) { return "<Name>" + std::string(name) + "</Name>"; }

std::string ResponseWith(std::string_view name, std::string_view rets) {
  return Framed("<" + std::string(name) +
                " requestID=\"1\" statusCode=\"0\" statusSeverity=\"Info\" "
                "statusMessage=\"Status OK\">\n" +
                std::string(rets) + "</" + std::string(name) + ">\n");
}

TEST(CustomerQuery, FindsByListId) {
  Conversation client;

  EXPECT_EQ(client.Ask(Query("<ListID>80000001-1262304000</ListID>")),
            ResponseWith("CustomerQueryRs", kZimmerRet));
}

TEST(CustomerQuery, FindsByFullNameInAnyLetterCase) {
  Conversation client;

  EXPECT_EQ(client.Ask(Query("<FullName> zIMMER </FullName>")),
            ResponseWith("CustomerQueryRs", kZimmerRet));
}

TEST(CustomerQuery, FindsTheActiveOnesWithoutAFilter) {
  Conversation client;

  EXPECT_EQ(client.Ask(Query("")), ResponseWith("CustomerQueryRs", kZimmerRet));
}

TEST(CustomerQuery, FindsByStatus) {
  Conversation client;

  EXPECT_THAT(client.Ask(Query("<ActiveStatus>InactiveOnly</ActiveStatus>")),
              AllOf(HasSubstr("Archer"), Not(HasSubstr("Zimmer"))));
  EXPECT_THAT(client.Ask(Query("<ActiveStatus>All</ActiveStatus>")),
              AllOf(HasSubstr("Archer"), HasSubstr("Zimmer")));
}

TEST(CustomerQuery, ReturnsInTheOrderOfNames) {
  Conversation client;

  const std::string response = client.Ask(Query("<ActiveStatus>All</ActiveStatus>"));

  EXPECT_LT(response.find("Archer"), response.find("Zimmer"));
}

TEST(CustomerQuery, ReturnsInTheOrderOfTheKeysAskedFor) {
  Conversation client;

  const std::string response =
      client.Ask(Query("<FullName>Zimmer</FullName><FullName>Archer</FullName>"));

  EXPECT_LT(response.find("<Name>Zimmer"), response.find("<Name>Archer"));
}

TEST(CustomerQuery, ReturnsNoMoreThanAskedFor) {
  Conversation client;

  const std::string response =
      client.Ask(Query("<MaxReturned>1</MaxReturned><ActiveStatus>All</ActiveStatus>"));

  EXPECT_THAT(response, AllOf(HasSubstr("Archer"), Not(HasSubstr("Zimmer"))));
}

TEST(CustomerQuery, SaysThatNothingMatches) {
  Conversation client("<Company/>");

  EXPECT_EQ(client.Ask(Query("")),
            Framed("<CustomerQueryRs requestID=\"1\" statusCode=\"1\" statusSeverity=\"Info\" "
                   "statusMessage=\"A query request did not find a matching object in "
                   "QuickBooks\" />\n"));
}

TEST(CustomerQuery, ReturnsWhatItFindsAndNamesWhatItDoesNot) {
  Conversation client;

  EXPECT_EQ(client.Ask(Query("<FullName>Nobody</FullName><FullName>Zimmer</FullName>")),
            Framed("<CustomerQueryRs requestID=\"1\" statusCode=\"500\" statusSeverity=\"Warn\" "
                   "statusMessage=\"The query request has not been fully completed. There was a "
                   "required element (&quot;Nobody&quot;) that could not be found in "
                   "QuickBooks.\">\n" +
                   std::string(kZimmerRet) + "</CustomerQueryRs>\n"));
}

TEST(CustomerQuery, RefusesAListIdOfAnotherForm) {
  Conversation client;

  EXPECT_THAT(client.Ask(Query("<ListID>zimmer</ListID>")),
              HasSubstr("statusCode=\"3000\" statusSeverity=\"Error\" statusMessage=\"The given "
                        "object ID &quot;zimmer&quot; in the field &quot;list id&quot; is "
                        "invalid.\" />"));
}

TEST(CustomerQuery, RefusesWhatTheTableDoesNotHold) {
  Conversation client;

  for (const char* content : {"<Name>Zimmer</Name>", "<ActiveStatus>Some</ActiveStatus>",
                              "<MaxReturned>many</MaxReturned>",
                              "<ActiveStatus>All</ActiveStatus><MaxReturned>1</MaxReturned>",
                              "<ListID>80000001-1262304000</ListID><FullName>Zimmer</FullName>",
                              "<FullName>Zimmer</FullName><MaxReturned>1</MaxReturned>"}) {
    EXPECT_EQ(client.FailureOfAsking(Query(content)), 0x80040400) << content;
  }
}

TEST(CustomerAdd, ReturnsTheCustomerAsItNowIs) {
  Conversation client;

  const std::string response = client.Ask(
      Add("<Name> Caf\xC3\xA9 Noir </Name><IsActive>1</IsActive><CompanyName>C &amp; N"
          "</CompanyName><FirstName/><BillAddress><Addr1>1 Main</Addr1><City>Napa</City>"
          "</BillAddress><ShipAddress/><Phone>555-0101</Phone><Email>a@example.com</Email>"
          "<Notes>Pays late</Notes>"));

  EXPECT_EQ(response, ResponseWith("CustomerAddRs",
                                   "<CustomerRet>\n"
                                   "<ListID>80000003-1262682187</ListID>\n"
                                   "<TimeCreated>2010-01-05T09:03:07+00:00</TimeCreated>\n"
                                   "<TimeModified>2010-01-05T09:03:07+00:00</TimeModified>\n"
                                   "<EditSequence>1262682187</EditSequence>\n"
                                   "<Name>Caf&#233; Noir</Name>\n"
                                   "<FullName>Caf&#233; Noir</FullName>\n"
                                   "<IsActive>true</IsActive>\n"
                                   "<Sublevel>0</Sublevel>\n"
                                   "<CompanyName>C &amp; N</CompanyName>\n"
                                   "<BillAddress>\n"
                                   "<Addr1>1 Main</Addr1>\n"
                                   "<City>Napa</City>\n"
                                   "</BillAddress>\n"
                                   "<BillAddressBlock>\n"
                                   "<Addr1>1 Main</Addr1>\n"
                                   "<Addr2>Napa</Addr2>\n"
                                   "</BillAddressBlock>\n"
                                   "<Phone>555-0101</Phone>\n"
                                   "<Email>a@example.com</Email>\n"
                                   "<Balance>0.00</Balance>\n"
                                   "<TotalBalance>0.00</TotalBalance>\n"
                                   "<JobStatus>None</JobStatus>\n"
                                   "<Notes>Pays late</Notes>\n"
                                   "</CustomerRet>\n"));
}

TEST(CustomerAdd, IsSavedAndReadAgain) {
  Conversation client;
  client.Ask(Add(Named("Caf\xC3\xA9")));

  Conversation later(client.File());

  EXPECT_TRUE(later.Has("caf\xC3\xA9"));
  EXPECT_TRUE(later.Has("Archer"));
}

TEST(CustomerAdd, RefusesANameInUse) {
  Conversation client;

  EXPECT_THAT(client.Ask(Add(Named("ZIMMER"))), HasSubstr("statusCode=\"3100\""));

  EXPECT_EQ(client.oStorage.iWritten, 0);
}

TEST(CustomerAdd, TakesANameOfFortyOneCharactersAndNoMore) {
  Conversation client;

  EXPECT_THAT(client.Ask(Add(Named(std::string(41, 'x')))), HasSubstr("statusCode=\"0\""));
  EXPECT_THAT(
      client.Ask(Add(Named(std::string(42, 'x')))),
      HasSubstr("statusCode=\"3070\" statusSeverity=\"Error\" statusMessage=\"The string "
                "&quot;" +
                std::string(42, 'x') + "&quot; in the field &quot;Name&quot; is too long."));
}

// A colon separates a parent's name from its child's.
TEST(CustomerAdd, RefusesANameWithAColon) {
  Conversation client;

  EXPECT_THAT(client.Ask(Add(Named("A:B"))), HasSubstr("statusCode=\"3090\""));
}

TEST(CustomerAdd, RefusesWhatTheTableDoesNotHold) {
  Conversation client;

  for (const char* fields :
       {"", "<Phone>1</Phone>", "<Phone>1</Phone><Name>Jo</Name>",
        "<Name>Jo</Name><Shoes>42</Shoes>", "<Name>Jo</Name><IsActive>maybe</IsActive>",
        "<Name>Jo</Name><BillAddress>1 Main</BillAddress>"}) {
    EXPECT_EQ(client.FailureOfAsking(Add(fields)), 0x80040400) << fields;
  }
  EXPECT_EQ(client.FailureOfAsking("<CustomerAddRq/>"), 0x80040400);
}

TEST(CustomerAdd, NeedsAName) {
  Conversation client;

  EXPECT_THAT(client.Ask(Add("<Name/>")), HasSubstr("statusCode=\"3090\""));
}

TEST(CustomerAdd, ChangesNothingWhenItCannotBeSaved) {
  Conversation client;
  client.oStorage.iWriteError = platform::kDiskFull;

  const std::string response = client.Ask(Add(Named("Jo")));

  EXPECT_THAT(response,
              HasSubstr("statusCode=\"3180\" statusSeverity=\"Error\" statusMessage=\"There "
                        "was an error when saving a Customers list, element "
                        "&quot;Jo&quot;.  QuickBooks error message: "));
  EXPECT_FALSE(client.Has("Jo"));
  EXPECT_EQ(client.File(), kTwoCustomers);
}

TEST(CustomerAdd, CanBeTriedAgainAfterItCouldNotBeSaved) {
  Conversation client;
  client.oStorage.iWriteError = platform::kDiskFull;
  client.Ask(Add(Named("Jo")));
  client.oStorage.iWriteError = 0;

  EXPECT_THAT(client.Ask(Add(Named("Jo"))), HasSubstr("statusCode=\"0\""));
}

}  // namespace
}  // namespace ostrel
