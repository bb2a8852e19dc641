// Feeds the QuickBooks stand-in requests of any shape. The responses must be well-formed and
// ASCII; what it refuses must be refused with one of the request processor's own numbers.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/SystemError.h"
#include "simulator/company/CompanyReader.h"
#include "simulator/company/Journal.h"
#include "simulator/messages/QbxmlEngine.h"
#include "simulator/xml/XmlReader.h"
#include "tests/fuzz/FuzzTarget.h"

namespace ostrel::simulator {
namespace {

using fuzz::Require;

constexpr std::string_view kCompany =
    "<Company name='Fuzz'><Customer><Name>Zimmer</Name></Customer>"
    "<Customer><Name>Job</Name><ParentRef><FullName>Zimmer</FullName></ParentRef></Customer>"
    "<Account><Name>Sales</Name><AccountType>Income</AccountType></Account>"
    "<Account><Name>Owed</Name><AccountType>AccountsReceivable</AccountType></Account>"
    "<ItemService><Name>Work</Name><SalesOrPurchase><Price>40.00</Price>"
    "<AccountRef><FullName>Sales</FullName></AccountRef></SalesOrPurchase></ItemService>"
    "<Invoice><CustomerRef><FullName>Zimmer</FullName></CustomerRef><InvoiceLineRet>"
    "<ItemRef><FullName>Work</FullName></ItemRef></InvoiceLineRet></Invoice></Company>";
constexpr std::size_t kMaxElements = 1'000'000;

class Memory : public CompanyStorage {
 public:
  std::string sJournal;

  int Read(TextView, std::string&) override { return platform::kFileNotFound; }
  int CheckWritable(TextView, FileMark&) override { return 0; }
  int WriteFrom(std::int64_t position, TextView path, std::string_view bytes) override {
    if (!path.ends_with(u".journal")) return 0;
    sJournal.resize(static_cast<std::size_t>(position));
    sJournal.append(bytes);
    return 0;
  }
  int Rename(TextView, TextView) override { return 0; }
  int Erase(TextView) override { return 0; }
};

void TryRequest(TextView request) {
  const Stamp now = {1262682187, "2010-01-05T09:03:07+00:00"};
  Memory storage;
  auto company = CompanyFromBytes(kCompany, now);
  Require(company.has_value(), "the company can be read");
  OpenCompany open(*std::move(company), CompanyFile(u"fuzz.qbw", storage), FileMode::kSingleUser);
  Session session;
  try {
    const Text response = ProcessQbxml(request, open, session, now);
    XmlDocument document;
    Require(ReadXmlText(response, kMaxElements, document) == XmlFault::kNone,
            "a response is well-formed");
    for (const char16_t c : response) Require(c < 0x80, "a response is ASCII");
  } catch (const RequestProcessorError& error) {
    const auto number = static_cast<std::uint32_t>(error.Number);
    Require(number >= 0x80040400 && number <= 0x80040430, "a refusal has a known number");
  }
  // A company that has taken the request in must be one that can be read again, and so must what
  // its journal has of it.
  const Journal journal = ReadJournal(storage.sJournal);
  Require(journal.leftOut.empty() && journal.wholeBytes == storage.sJournal.size(),
          "a journal can be read");
  Require(CompanyFromBytes(open.Data().ToBytes(), now).has_value(), "a company can be read");
}

const fuzz::Registered kTarget("qbxml",
                               [](std::string_view bytes) { TryRequest(FromUtf8(bytes)); });

}  // namespace
}  // namespace ostrel::simulator
