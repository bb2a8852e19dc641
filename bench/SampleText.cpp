#include "bench/SampleText.h"

namespace ostrel::bench {
namespace {

constexpr TextView kOpening =
    u"<?xml version=\"1.0\" ?>\r\n<QBXML>\r\n<QBXMLMsgsRs>\r\n"
    u"<CustomerQueryRs requestID=\"1\" statusCode=\"0\" statusSeverity=\"Info\" "
    u"statusMessage=\"Status OK\">\r\n";
constexpr TextView kCustomer =
    u"<CustomerRet>\r\n<ListID>80000001-1245332071</ListID>\r\n"
    u"<TimeCreated>2009-06-18T09:34:31-05:00</TimeCreated>\r\n"
    u"<TimeModified>2009-06-18T09:34:31-05:00</TimeModified>\r\n"
    u"<EditSequence>1245332071</EditSequence>\r\n<Name>Harbor Street Supply</Name>\r\n"
    u"<FullName>Harbor Street Supply</FullName>\r\n<IsActive>true</IsActive>\r\n"
    u"<BillAddress>\r\n<Addr1>Harbor Street Supply</Addr1>\r\n<Addr2>12 Harbor Street</Addr2>\r\n"
    u"<City>Middlefield</City>\r\n<State>CA</State>\r\n<PostalCode>94482</PostalCode>\r\n"
    u"</BillAddress>\r\n<Phone>415-555-0123</Phone>\r\n<Balance>0.00</Balance>\r\n"
    u"<TotalBalance>0.00</TotalBalance>\r\n<JobStatus>None</JobStatus>\r\n</CustomerRet>\r\n";
constexpr TextView kClosing = u"</CustomerQueryRs>\r\n</QBXMLMsgsRs>\r\n</QBXML>";

}  // namespace

Text SampleResponse(std::size_t characters) {
  Text text;
  text.reserve(characters);
  text.append(kOpening);
  while (text.size() + kCustomer.size() + kClosing.size() <= characters) text.append(kCustomer);
  text.append(characters - kClosing.size() - text.size(), u' ').append(kClosing);
  return text;
}

}  // namespace ostrel::bench
