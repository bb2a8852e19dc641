#include "quickbooks/win32/ComRequestProcessor.h"

#include <algorithm>
#include <array>
#include <memory>

#include "platform/SystemError.h"
#include "quickbooks/ErrorNumbers.h"

namespace ostrel {
namespace {

using platform::AutomationObject;
using platform::Outcome;
using platform::Variant;

struct Sentence {
  std::int32_t number;
  TextView text;
};

constexpr Sentence kComSentences[] = {
    {Raw(Hresult::kGivenUp), kGivenUpText},
    {REGDB_E_CLASSNOTREG, u"QuickBooks' request processor is not installed."},
    {RPC_E_CALL_REJECTED, u"QuickBooks is busy. It may be showing a dialog box."},
    {RPC_E_SERVERCALL_RETRYLATER, u"QuickBooks is busy. It may be showing a dialog box."},
};

// For a number that came without a description of its own.
Text DescriptionOf(std::int32_t number) {
  if (IsServerGone(number)) return u"QuickBooks has ended, or the connection to it is lost.";
  const auto* found = std::ranges::find(kComSentences, number, &Sentence::number);
  return found != std::end(kComSentences) ? Text(found->text) : platform::SystemErrorText(number);
}

Text ResultOf(Outcome outcome) {
  if (!outcome.Failed()) return outcome.value.AsText();
  if (!outcome.described) outcome.description = DescriptionOf(outcome.number);
  throw RequestProcessorError(outcome.number, std::move(outcome.description));
}

}  // namespace

void ComRequestProcessor::Create() { ResultOf(CreateObject()); }

// QuickBooks may have ended since the object was made, perhaps for the night.
void ComRequestProcessor::OpenConnection(TextView applicationId, TextView applicationName) {
  Outcome outcome = Call(L"OpenConnection", applicationId, applicationName);
  if (IsServerGone(outcome.number) && !CreateObject().Failed()) {
    outcome = Call(L"OpenConnection", applicationId, applicationName);
  }
  ResultOf(std::move(outcome));
}

Text ComRequestProcessor::BeginSession(TextView companyFile, FileMode mode) {
  return ResultOf(Call(L"BeginSession", companyFile, static_cast<std::int32_t>(mode)));
}

Text ComRequestProcessor::ProcessRequest(TextView ticket, TextView request) {
  return ResultOf(Call(L"ProcessRequest", ticket, request));
}

Text ComRequestProcessor::GetCurrentCompanyFileName(TextView ticket) {
  return ResultOf(Call(L"GetCurrentCompanyFileName", ticket));
}

void ComRequestProcessor::EndSession(TextView ticket) { ResultOf(Call(L"EndSession", ticket)); }

void ComRequestProcessor::CloseConnection() { ResultOf(Call(L"CloseConnection")); }

Outcome ComRequestProcessor::CreateObject() {
  return oThread.Do([classId = oClass, interfaceId = oInterface](AutomationObject& object) {
    return Outcome{AutomationObject::Create(classId, interfaceId, object)};
  });
}

template <typename... Arguments>
Outcome ComRequestProcessor::Call(const wchar_t* operation, const Arguments&... arguments) {
  using Values = std::array<Variant, sizeof...(Arguments)>;
  return oThread.Do([operation, values = std::make_shared<Values>(Values{Variant(arguments)...})](
                        AutomationObject& object) {
    return std::apply([&](const auto&... value) { return object.Call(operation, {&value...}); },
                      *values);
  });
}

std::unique_ptr<RequestProcessor> MakeInstalledRequestProcessor() {
  return std::make_unique<ComRequestProcessor>(kRequestProcessorClass, kRequestProcessorInterface);
}

}  // namespace ostrel
