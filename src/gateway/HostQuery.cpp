#include "gateway/HostQuery.h"

#include <charconv>
#include <optional>
#include <string>

#include "util/Wire.h"

namespace ostrel {
namespace {

struct Product {
  TextView name;
  std::int16_t code;
};

// Kept: "Pro" stands before "Premier" and "Enterprise", so that a name with "Professional" is a
// Pro.
constexpr Product kProducts[] = {
    {u"Online", 4}, {u"Wholesale", 5}, {u"Pro", 1}, {u"Premier", 2}, {u"Enterprise", 3},
};

struct ProductYear {
  TextView name;
  std::int16_t year;
};

// The first that occurs in the product's name counts.
constexpr ProductYear kYears[] = {
    {u"2000", 2000}, {u"2001", 2001}, {u"2002", 2002}, {u"2003", 2003}, {u"2004", 2004},
    {u"2005", 2005}, {u"2006", 2006}, {u"2007", 2007}, {u"2008", 2008}, {u"2009", 2009},
    {u"2010", 2010}, {u"5.0", 2005},  {u"9.0", 2009},
};

std::int16_t ProductCode(TextView productName) {
  for (const Product& product : kProducts) {
    if (Contains(productName, product.name)) return product.code;
  }
  return 0;
}

std::int16_t YearOf(TextView productName, std::int16_t majorVersion) {
  if (majorVersion == 15) return 2005;
  if (majorVersion == 19) return 2009;
  for (const ProductYear& row : kYears) {
    if (Contains(productName, row.name)) return row.year;
  }
  return 0;
}

// The text between the first `tag` and the next "<"; nothing without the tag.
std::optional<TextView> ValueOf(TextView reply, TextView tag) {
  const std::size_t at = reply.find(tag);
  if (at == TextView::npos) return std::nullopt;
  const TextView value = reply.substr(at + tag.size());
  return value.substr(0, value.find(u'<'));
}

std::int16_t NumberOr0(std::optional<TextView> value) {
  const std::string digits = ToUtf8(TrimBlanks(value.value_or(TextView())));
  std::int16_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() ? number : std::int16_t{0};
}

void AddLine(Text& text, TextView label, TextView value) {
  text.append(label).append(value).push_back(kAttributeMark);
}

}  // namespace

const TextView HostQuery::kRequest =
    u"<?xml version=\"1.0\"?><?qbxml version=\"3.0\" ?>\r\n"
    u"<QBXML>\r\n"
    u"<QBXMLMsgsRq onError=\"continueOnError\">\r\n"
    u"<HostQueryRq requestID=\"99\" />\r\n"
    u"</QBXMLMsgsRq>\r\n"
    u"</QBXML>";

HostQuery::HostQuery(qbxml& session, IdleClose& idleClose, Trace& trace,
                     const platform::Clock& clock)
    : oSession(session), oIdleClose(idleClose), oTrace(trace), oClock(clock) {}

bool HostQuery::Run(Text& response, bool bWriteHistory) {
  const std::int32_t failure = oSession.ProcessRequest(kRequest, response);
  if (failure != 0) {
    Fail(response, failure, bWriteHistory);
    return false;
  }
  iQBMajorVersion = NumberOr0(ValueOf(response, u"<MajorVersion>"));
  iQBMinorVersion = NumberOr0(ValueOf(response, u"<MinorVersion>"));
  sQBProductName = ValueOf(response, u"<ProductName>").value_or(u"Unknown");
  iQBProductCode = ProductCode(sQBProductName);
  iQBProductYear = iQBProductCode == 0 ? std::int16_t{0} : YearOf(sQBProductName, iQBMajorVersion);
  if (bWriteHistory) oTrace.WriteHistoryFile(Findings(response));
  return true;
}

void HostQuery::Fail(Text& response, std::int32_t number, bool bWriteHistory) {
  response = oSession.ErrorDescription(number);
  oSession.EndSessionAndCloseConnection();
  oIdleClose.dCloseAt = oClock.SteadyNow();
  if (bWriteHistory) oTrace.WriteHistoryFile(u"Error: " + response);
  oTrace.WriteStatusFile(response);
}

// The history text: the values as they came, then what was made of them; the last line is not
// ended.
Text HostQuery::Findings(TextView reply) const {
  Text text;
  AddLine(text, u"<MajorVersion>: ", ValueOf(reply, u"<MajorVersion>").value_or(TextView()));
  AddLine(text, u"<MinorVersion>: ", ValueOf(reply, u"<MinorVersion>").value_or(TextView()));
  AddLine(text, u"QBVersion <ProductName>: ", sQBProductName);
  AddLine(text, Text(39, u'='), {});
  AddLine(text, u"MajorVersion: ", ToText(std::int64_t{iQBMajorVersion}));
  AddLine(text, u"MinorVersion: ", ToText(std::int64_t{iQBMinorVersion}));
  AddLine(text, u"ProductCode: ", ToText(std::int64_t{iQBProductCode}));
  AddLine(text, u"ProductYear: ", ToText(std::int64_t{iQBProductYear}));
  return text.append(51, u'=');
}

}  // namespace ostrel
