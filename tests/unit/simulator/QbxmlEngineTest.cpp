#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/messages/QbxmlEngine.h"
#include "tests/unit/simulator/Conversation.h"

namespace ostrel::simulator {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t kParseError = 0x80040400;
constexpr char kAddJo[] =
    "<CustomerAddRq><CustomerAdd><Name>Jo</Name></CustomerAdd></CustomerAddRq>";
constexpr char kAddZimmer[] =
    "<CustomerAddRq requestID=\"2\"><CustomerAdd><Name>Zimmer</Name></CustomerAdd></CustomerAddRq>";

// The request and its prolog as the gateway sends them.
std::string HostQuery(
    std::string_view prolog = "<?xml version=\"1.0\"?><?qbxml version=\"3.0\" ?>") {
  return std::string(prolog) +
         "\r\n<QBXML>\r\n<QBXMLMsgsRq onError=\"continueOnError\">\r\n"
         "<HostQueryRq requestID=\"99\" />\r\n</QBXMLMsgsRq>\r\n</QBXML>";
}

std::uint32_t FailureOfSending(std::string_view request) {
  Conversation client;
  return FailureOf([&] { client.Send(request); });
}

TEST(QbxmlEngine, RespondsToAHostQuery) {
  Conversation client;

  EXPECT_EQ(client.Send(HostQuery()),
            Framed("<HostQueryRs requestID=\"99\" statusCode=\"0\" statusSeverity=\"Info\" "
                   "statusMessage=\"Status OK\">\n"
                   "<HostRet>\n"
                   "<ProductName>QuickBooks Pro 2007</ProductName>\n"
                   "<MajorVersion>17</MajorVersion>\n"
                   "<MinorVersion>4</MinorVersion>\n"
                   "<Country>US</Country>\n"
                   "<SupportedQBXMLVersion>1.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>1.1</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>2.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>2.1</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>3.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>4.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>4.1</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>5.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>6.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>7.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>8.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>9.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>10.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>11.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>12.0</SupportedQBXMLVersion>\n"
                   "<SupportedQBXMLVersion>13.0</SupportedQBXMLVersion>\n"
                   "<IsAutomaticLogin>false</IsAutomaticLogin>\n"
                   "<QBFileMode>SingleUser</QBFileMode>\n"
                   "</HostRet>\n"
                   "</HostQueryRs>\n"));
}

TEST(QbxmlEngine, RespondsToACompanyQuery) {
  Conversation client;

  EXPECT_EQ(client.Ask("<CompanyQueryRq/>"),
            Framed("<CompanyQueryRs statusCode=\"0\" statusSeverity=\"Info\" "
                   "statusMessage=\"Status OK\">\n"
                   "<CompanyRet>\n"
                   "<IsSampleCompany>false</IsSampleCompany>\n"
                   "<CompanyName>Hale &amp; Daughters</CompanyName>\n"
                   "<LegalCompanyName>Hale and Daughters</LegalCompanyName>\n"
                   "<Phone>555-0100</Phone>\n"
                   "</CompanyRet>\n"
                   "</CompanyQueryRs>\n"));
}

TEST(QbxmlEngine, TakesTheVersionFromTheDocumentTypeWhereNothingElseSaysIt) {
  const auto withType = [](const std::string& version, const std::string& instruction = "") {
    return FailureOfSending(HostQuery("<?xml version=\"1.0\"?>" + instruction +
                                      "<!DOCTYPE QBXML PUBLIC '-//INTUIT//DTD QBXML QBD " +
                                      version + "//EN' 'http://localhost/qbxml.dtd'>"));
  };

  EXPECT_EQ(withType("2.0"), 0u);
  EXPECT_EQ(withType("99.0"), 0x80040423);
  EXPECT_EQ(withType(""), kParseError);
  EXPECT_EQ(withType("99.0", "<?qbxml version='2.0'?>"), 0u);
  EXPECT_EQ(FailureOfSending(HostQuery("<!DOCTYPE QBXML PUBLIC '-//X//Y' 'z'>")), kParseError);
}

TEST(QbxmlEngine, EchoesARequestIdAsItIs) {
  Conversation client;

  EXPECT_THAT(client.Ask("<CompanyQueryRq requestID='a &lt;\"b'/>"),
              HasSubstr("<CompanyQueryRs requestID=\"a &lt;&quot;b\" statusCode"));
}

TEST(QbxmlEngine, TakesAnyWrittenFormOfTheVersion) {
  for (const char* version : {"<?qbxml version=\"3.0\"?>", "<?qbxml version='3.0'?>",
                              "<?qbxml version=\"3.0\" ?>", "<?qbxml version = '13.0' ?>"}) {
    EXPECT_EQ(FailureOfSending(HostQuery("<?xml version='1.0' ?>\r\n" + std::string(version))), 0u)
        << version;
  }
}

TEST(QbxmlEngine, RefusesARequestWithoutAVersion) {
  EXPECT_EQ(FailureOfSending(HostQuery("<?xml version=\"1.0\"?>")), kParseError);
  EXPECT_EQ(FailureOfSending(HostQuery("<?qbxml?>")), kParseError);
  EXPECT_EQ(FailureOfSending(HostQuery("<?qbxml version=3.0?>")), kParseError);
  EXPECT_EQ(FailureOfSending(HostQuery("<?qbxml version=\"3.0'?>")), kParseError);
}

TEST(QbxmlEngine, RefusesAnUnknownVersion) {
  for (const char* version : {"0.9", "3", "13.1", "99.0", "CA3.0"}) {
    EXPECT_EQ(FailureOfSending(HostQuery("<?qbxml version=\"" + std::string(version) + "\"?>")),
              0x80040423)
        << version;
  }
}

TEST(QbxmlEngine, RefusesWhatIsNotWellFormed) {
  EXPECT_EQ(FailureOfSending(""), kParseError);
  EXPECT_EQ(FailureOfSending("garbage"), kParseError);
  EXPECT_EQ(FailureOfSending(HostQuery() + "x"), kParseError);
}

TEST(QbxmlEngine, RefusesAnotherFrame) {
  const std::string version = "<?qbxml version=\"3.0\"?>";
  const std::string query = "<HostQueryRq/>";

  for (const std::string& frame :
       {"<QBXML/>" + query, std::string("<QBXML/>"), "<QBXML>" + query + "</QBXML>",
        "<QBXMLMsgsRq onError='stopOnError'>" + query + "</QBXMLMsgsRq>",
        "<QBXML><QBXMLMsgsRq>" + query + "</QBXMLMsgsRq></QBXML>",
        "<QBXML><QBXMLMsgsRq onError='ignore'>" + query + "</QBXMLMsgsRq></QBXML>",
        std::string("<QBXML><QBXMLMsgsRq onError='stopOnError'></QBXMLMsgsRq></QBXML>"),
        "<QBXML x='1'><QBXMLMsgsRq onError='stopOnError'>" + query + "</QBXMLMsgsRq></QBXML>",
        "<QBXML>x<QBXMLMsgsRq onError='stopOnError'>" + query + "</QBXMLMsgsRq></QBXML>",
        "<QBXML><QBXMLMsgsRq onError='stopOnError'>x" + query + "</QBXMLMsgsRq></QBXML>"}) {
    EXPECT_EQ(FailureOfSending(version + frame), kParseError) << frame;
  }
}

TEST(QbxmlEngine, RefusesToRollBack) {
  Conversation client;

  EXPECT_EQ(FailureOf([&] { client.Ask("<HostQueryRq/>", "rollbackOnError"); }), 0x80040413);
}

TEST(QbxmlEngine, RefusesUnknownMessagesElementsAndAttributes) {
  Conversation client;

  EXPECT_EQ(client.FailureOfAsking("<UnknownRq/>"), kParseError);
  EXPECT_EQ(client.FailureOfAsking("<HostQueryRq><Name/></HostQueryRq>"), kParseError);
  EXPECT_EQ(client.FailureOfAsking("<HostQueryRq>text</HostQueryRq>"), kParseError);
  EXPECT_EQ(client.FailureOfAsking("<HostQueryRq requestID='1' other='2'/>"), kParseError);
  EXPECT_EQ(client.FailureOfAsking("<HostQueryRq requestid='1'/>"), kParseError);
}

TEST(QbxmlEngine, DoesNothingOfARequestThatItRefuses) {
  Conversation client;

  EXPECT_EQ(client.FailureOfAsking(std::string(kAddJo) + "<UnknownRq/>"), kParseError);

  EXPECT_FALSE(client.Has("Jo"));
}

TEST(QbxmlEngine, RespondsToMessagesInTheirOrder) {
  Conversation client;

  const std::string response = client.Ask("<CompanyQueryRq/><HostQueryRq/>");

  EXPECT_LT(response.find("<CompanyQueryRs"), response.find("<HostQueryRs"));
}

TEST(QbxmlEngine, StopsAtTheFirstErrorWhenAskedTo) {
  Conversation client;

  const std::string response = client.Ask(std::string(kAddZimmer) + kAddJo, "stopOnError");

  EXPECT_EQ(response,
            Framed("<CustomerAddRs requestID=\"2\" statusCode=\"3100\" statusSeverity=\"Error\" "
                   "statusMessage=\"The name &quot;Zimmer&quot; of the list element is already in "
                   "use.\" />\n"
                   "<CustomerAddRs statusCode=\"3231\" statusSeverity=\"Error\" "
                   "statusMessage=\"The request has not been processed.\" />\n"));
  EXPECT_FALSE(client.Has("Jo"));
}

TEST(QbxmlEngine, ContinuesAfterAnErrorWhenAskedTo) {
  Conversation client;

  client.Ask(std::string(kAddZimmer) + kAddJo, "continueOnError");

  EXPECT_TRUE(client.Has("Jo"));
}

TEST(QbxmlEngine, DoesNotStopAtAWarning) {
  Conversation client;

  const std::string response =
      client.Ask("<CustomerQueryRq><FullName>Nobody</FullName></CustomerQueryRq><HostQueryRq/>",
                 "stopOnError");

  EXPECT_THAT(response, HasSubstr("statusCode=\"500\" statusSeverity=\"Warn\""));
  EXPECT_THAT(response, HasSubstr("<HostRet>"));
}

// A response of so many bytes, half of them a customer's notes.
std::string MuchOf(int customers) {
  std::string company = "<Company>";
  for (int i = 0; i < customers; ++i) {
    company += "<Customer><Name>" + std::to_string(i) + "</Name><Notes>" +
               std::string(1024 * 1024, 'x') + "</Notes></Customer>";
  }
  return company + "</Company>";
}

TEST(QbxmlEngine, EndsAResponseThatWouldTakeAllMemory) {
  Conversation client(MuchOf(16));
  std::string queries;
  for (int i = 0; i < 7; ++i) queries += "<CustomerQueryRq/>";
  EXPECT_EQ(client.FailureOfAsking(queries), 0u);

  for (int i = 0; i < 5'000; ++i) queries += "<CustomerQueryRq/>";

  EXPECT_EQ(client.FailureOfAsking(queries), 0x8004040E);
}

TEST(QbxmlEngine, EndsOneMessagesResponseThatWouldTakeAllMemory) {
  Conversation client(MuchOf(1));
  std::string keys;
  for (int i = 0; i < 200; ++i) keys += "<FullName>0</FullName>";

  EXPECT_EQ(client.FailureOfAsking("<CustomerQueryRq>" + keys + "</CustomerQueryRq>"), 0x8004040E);
}

TEST(QbxmlEngine, RefusesMoreElementsThanMemoryIsMeantFor) {
  std::string messages;
  for (int i = 0; i < 500'000; ++i) messages += "<HostQueryRq/>";
  Conversation client;

  EXPECT_EQ(client.FailureOfAsking(messages), 0x8004040E);
}

}  // namespace
}  // namespace ostrel::simulator
