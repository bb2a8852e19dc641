#include "simulator/win32/Operations.h"

namespace ostrel::simulator {
namespace {

TextView TextAt(Values values, std::size_t index) {
  const BSTR text = values[index]->bstrVal;
  return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

Text OpenConnection(RequestProcessor& processor, Values values) {
  processor.OpenConnection(TextAt(values, 0), TextAt(values, 1));
  return {};
}

Text BeginSession(RequestProcessor& processor, Values values) {
  // A number too large for a file mode is none either.
  const LONG mode = values[1]->lVal;
  const auto fileMode = mode == static_cast<std::int16_t>(mode) ? mode : -1;
  return processor.BeginSession(TextAt(values, 0), static_cast<FileMode>(fileMode));
}

Text ProcessRequest(RequestProcessor& processor, Values values) {
  return processor.ProcessRequest(TextAt(values, 0), TextAt(values, 1));
}

Text GetCurrentCompanyFileName(RequestProcessor& processor, Values values) {
  return processor.GetCurrentCompanyFileName(TextAt(values, 0));
}

Text EndSession(RequestProcessor& processor, Values values) {
  processor.EndSession(TextAt(values, 0));
  return {};
}

Text CloseConnection(RequestProcessor& processor, Values) {
  processor.CloseConnection();
  return {};
}

constexpr VARTYPE kText[] = {VT_BSTR};
constexpr VARTYPE kTwoTexts[] = {VT_BSTR, VT_BSTR};
constexpr VARTYPE kTextAndNumber[] = {VT_BSTR, VT_I4};

constexpr Operation kOperations[] = {
    {u"OpenConnection", kTwoTexts, OpenConnection, false},
    {u"BeginSession", kTextAndNumber, BeginSession, true},
    {u"ProcessRequest", kTwoTexts, ProcessRequest, true},
    {u"GetCurrentCompanyFileName", kText, GetCurrentCompanyFileName, true},
    {u"EndSession", kText, EndSession, false},
    {u"CloseConnection", {}, CloseConnection, false},
};

}  // namespace

std::span<const Operation> Operations() { return kOperations; }

}  // namespace ostrel::simulator
