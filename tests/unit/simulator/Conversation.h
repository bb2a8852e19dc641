// A client's talk with the stand-in: a company in memory, and requests without their frame.
#pragma once

#include <cstdint>
#include <string>

#include "simulator/SimulatedRequestProcessor.h"
#include "tests/unit/doubles/FakeClock.h"
#include "tests/unit/simulator/FakeCompanyStorage.h"

namespace ostrel {

inline constexpr char kTwoCustomers[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<Company name="Hale &amp; Daughters" product="QuickBooks Pro 2007" majorVersion="17" minorVersion="4" country="US">
  <CompanyInfo><LegalCompanyName>Hale and Daughters</LegalCompanyName><Phone>555-0100</Phone></CompanyInfo>
  <Customer>
    <ListID>80000001-1262304000</ListID>
    <TimeCreated>2010-01-01T00:00:00+00:00</TimeCreated>
    <TimeModified>2010-01-02T00:00:00+00:00</TimeModified>
    <EditSequence>1262390400</EditSequence>
    <Name>Zimmer</Name>
    <FullName>Zimmer</FullName>
    <IsActive>true</IsActive>
    <Sublevel>0</Sublevel>
    <Balance>12.50</Balance>
    <TotalBalance>12.50</TotalBalance>
  </Customer>
  <Customer><ListID>80000002-1262304001</ListID><Name>Archer</Name><IsActive>false</IsActive></Customer>
</Company>
)";

/// The HRESULT with which the action fails; 0 when it does not.
template <class Action>
std::uint32_t FailureOf(Action action) {
  try {
    action();
  } catch (const RequestProcessorError& error) {
    return static_cast<std::uint32_t>(error.Number);
  }
  return 0;
}

class Conversation {
 public:
  explicit Conversation(std::string company = kTwoCustomers) {
    oStorage.Files[kPath] = std::move(company);
    oProcessor.OpenConnection(u"", u"Test");
    sTicket = oProcessor.BeginSession(kPath, FileMode::kDoNotCare);
  }

  std::string Send(std::string_view request) {
    return ToUtf8(oProcessor.ProcessRequest(sTicket, FromUtf8(request)));
  }
  /// Sends messages in their frame.
  std::string Ask(std::string_view messages, std::string_view onError = "stopOnError") {
    return Send("<?xml version=\"1.0\"?><?qbxml version=\"" + sVersion +
                "\"?>\n<QBXML>\n<QBXMLMsgsRq onError=\"" + std::string(onError) + "\">\n" +
                std::string(messages) + "\n</QBXMLMsgsRq>\n</QBXML>");
  }
  std::uint32_t FailureOfAsking(std::string_view messages) {
    return FailureOf([&] { Ask(messages); });
  }
  /// Whether the company has a customer of that name, active or not.
  bool Has(std::string_view fullName) {
    const std::string response = Ask("<CustomerQueryRq><FullName>" + std::string(fullName) +
                                     "</FullName></CustomerQueryRq>");
    return response.find("<CustomerRet>") != std::string::npos;
  }
  /// The file as it is once the company is closed; it is opened again.
  std::string File() {
    oProcessor.EndSession(sTicket);
    sTicket = oProcessor.BeginSession(kPath, FileMode::kDoNotCare);
    return oStorage.Files[kPath];
  }

  /// Opens what the other conversation's process leaves behind when it is killed now.
  void OpenAfterKillOf(const Conversation& killed) {
    oProcessor.EndSession(sTicket);
    oStorage.Files = killed.oStorage.Files;
    sTicket = oProcessor.BeginSession(kPath, FileMode::kDoNotCare);
  }

  std::string sVersion = "3.0";  // of qbXML

  static constexpr char16_t kPath[] = u"C:\\Books\\hale.qbw";

  doubles::FakeCompanyStorage oStorage;
  doubles::FakeClock oClock;
  simulator::QuickBooks oQuickBooks{{.storage = oStorage,
                                     .clock = oClock,
                                     .delay = [](auto, auto&) {},
                                     .die = [] {},
                                     .usersCompany = u""}};
  SimulatedRequestProcessor oProcessor{oQuickBooks};
  Text sTicket;
};

/// The frame and the response's element around what the test is about.
inline std::string Framed(std::string_view responses) {
  return "<?xml version=\"1.0\" ?>\n<QBXML>\n<QBXMLMsgsRs>\n" + std::string(responses) +
         "</QBXMLMsgsRs>\n</QBXML>\n";
}

}  // namespace ostrel
