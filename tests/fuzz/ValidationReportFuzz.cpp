// Requests that QuickBooks refused, of any bytes: validating them and telling the fault ends, and
// tells a bounded part of what was sent.
#include "gateway/ValidationReport.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/OrderSchema.h"

namespace ostrel {
namespace {

using fuzz::Require;

constexpr std::size_t kLongestExcerpt = 4096;

const Text& SchemaPath() {
  static const OrderSchema schema;
  static const Text path = schema.Path();
  return path;
}

void TryRequest(std::string_view bytes) {
  fuzz::Bytes places(bytes);
  const auto linepos = static_cast<std::int8_t>(places.Next());
  const auto line = static_cast<std::int8_t>(places.Next());
  const Text text = PrepareForValidation(FromUtf8(places.Rest()));

  const platform::ParseFault fault = platform::ValidateXml(text, SchemaPath());
  Require(fault.errorCode != 0 || fault.reason.empty(), "a valid text has no reason");
  Require(fault.line >= 0 && fault.linepos >= 0 && fault.filepos >= 0, "places are none or there");
  const std::size_t told = fault.reason.size() + fault.srcText.size();
  Require(DescribeFault(fault, text).size() <= told + kLongestExcerpt, "a report has a bound");
  DescribeFault({1, u"any", u"", linepos, line, 0}, text);
}

const fuzz::Registered kTarget("validation", TryRequest);

}  // namespace
}  // namespace ostrel
