// Every operation of the request processor passes through one function, Call, which turns what is
// raised into a reduced number and a text. While an operation waits, events are handled, so that
// the session may be closed or given up meanwhile: the call holds the processor as well as the
// session does. A processor whose server has died, or whose call was given up, is forgotten; the
// next request makes a new one.
#include "gateway/qbxml.h"

#include <new>
#include <utility>

#include "gateway/ValidationReport.h"
#include "quickbooks/ErrorNumbers.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

Text Hexadecimal(std::int32_t hresult) {
  Text digits = u"0x";
  for (int shift = 28; shift >= 0; shift -= 4) {
    digits.push_back(u"0123456789ABCDEF"[static_cast<std::uint32_t>(hresult) >> shift & 0xF]);
  }
  return digits;
}

FileMode ModeFor(std::int16_t fileMode) {
  if (fileMode == 1) return FileMode::kSingleUser;
  if (fileMode == 2) return FileMode::kMultiUser;
  return FileMode::kDoNotCare;
}

template <typename Event, typename... Arguments>
void Notify(const Event& event, const Arguments&... arguments) {
  if (!event) return;
  try {
    event(arguments...);
  } catch (...) {  // NOLINT(bugprone-empty-catch): what listens must not break the session
  }
}

// Notes an operation for as long as it lives.
class Outstanding {
 public:
  using Processors = std::vector<RequestProcessor*>;

  Outstanding(Processors& processors, RequestProcessor& processor) : oProcessors(processors) {
    oProcessors.push_back(&processor);
  }
  ~Outstanding() { oProcessors.pop_back(); }
  Outstanding(const Outstanding&) = delete;
  Outstanding& operator=(const Outstanding&) = delete;

 private:
  Processors& oProcessors;
};

}  // namespace

qbxml::qbxml(ProcessorFactory factory) : oFactory(std::move(factory)) {}

qbxml::~qbxml() { CloseConnection(); }

bool qbxml::IsConnected() const { return bConnectionOpen; }

Text qbxml::CompanyFileName() {
  Text name;
  const Failure failure =
      Call([&](auto& processor) { name = processor.GetCurrentCompanyFileName(Text(sTicket)); });
  if (failure.lNumber == 0) return name;
  return u"Connection to Quickbooks Failed.  SessionId: " + sTicket + u" " + failure.sDescription;
}

std::int32_t qbxml::OpenConnectionAndBeginSession(TextView applicationId, TextView applicationName,
                                                  TextView companyFile, std::int16_t fileMode,
                                                  std::int32_t& errorNumber) {
  ClearLastError();
  // Kept: this sentence and OpenConnection's differ.
  errorNumber = CreateProcessor(u"Quickbooks SDK Missing.  Invalid Install");
  if (errorNumber != 0) return errorNumber;
  const std::int32_t failure = OpenConnection(applicationId, applicationName, errorNumber);
  return failure != 0 ? failure : BeginSession(companyFile, fileMode, errorNumber);
}

// The failures of closing are ignored: what went wrong before them stays the last error.
void qbxml::EndSessionAndCloseConnection() {
  const std::int32_t number = lLastError;
  Text description = sLastError;
  EndSession();
  CloseConnection();
  lLastError = number;
  sLastError = std::move(description);
}

std::int32_t qbxml::OpenConnection(TextView applicationId, TextView applicationName,
                                   std::int32_t& errorNumber) {
  errorNumber = CreateProcessor(u"Quickbooks SDK missing.  Invalid Install.");
  if (errorNumber != 0) return errorNumber;
  TellStatus(u"Openning Connection");
  errorNumber = Keep(
      Call([&](auto& processor) { processor.OpenConnection(applicationId, applicationName); }));
  if (errorNumber != 0) return errorNumber;
  TellStatus(u"Connection Open");
  bConnectionOpen = true;
  return 0;
}

std::int32_t qbxml::BeginSession(TextView companyFile, std::int16_t fileMode,
                                 std::int32_t& errorNumber) {
  errorNumber = 0;
  TellStatus(u"Loading Company file");
  Notify(Loading);
  errorNumber = Keep(Call(
      [&](auto& processor) { sTicket = processor.BeginSession(companyFile, ModeFor(fileMode)); }));
  Notify(Loaded);
  if (errorNumber != 0) return errorNumber;
  TellStatus(u"Session begun with " + CompanyFileName());
  bSessionBegun = bProcessorCreated;  // reading the name may have found QuickBooks gone
  return 0;
}

void qbxml::EndSession() {
  if (!bSessionBegun) return;
  TellStatus(u"Disconnecting from Quickbooks");
  // A failure is noted and no more: the session is over either way.
  Keep(Call([&](auto& processor) { processor.EndSession(Text(sTicket)); }));
  bSessionBegun = false;
}

void qbxml::CloseConnection() {
  if (!bConnectionOpen) return;
  TellStatus(u"Closing Quickbooks.");
  Keep(Call([](auto& processor) { processor.CloseConnection(); }));  // noted as above
  bConnectionOpen = false;
}

std::int32_t qbxml::ProcessRequest(TextView request, Text& response) {
  ClearLastError();
  response.clear();
  TellStatus(u"Processing Request");
  Failure failure =
      Call([&](auto& processor) { response = processor.ProcessRequest(Text(sTicket), request); });
  if (failure.lNumber == 0) {
    TellStatus(u"Request Processed");
    return 0;
  }
  failure.sDescription += u" (ProcessRequest:" + ToText(std::int64_t{failure.lNumber}) + u")";
  return Keep(std::move(failure));
}

Text qbxml::ErrorDescription(std::int32_t number) const {
  if (const auto text = TextFor(number)) return Text(*text);
  return u"Error " + ToText(std::int64_t{number}) + u" " + ToText(std::int64_t{lLastError}) + u" " +
         sLastError;
}

void qbxml::GiveUp() {
  for (RequestProcessor* processor : oOutstanding) processor->GiveUp();
}

bool qbxml::XMLValidate(TextView request, Text& report) const {
  return ValidateRequest(request, report);
}

// Whatever the reason, the user is told what to repair; unless it was the user who gave up.
std::int32_t qbxml::CreateProcessor(TextView failureText) {
  if (bProcessorCreated) return 0;
  Failure failure = MakeProcessor();
  bProcessorCreated = failure.lNumber == 0;
  if (bProcessorCreated) return 0;
  oProcessor = nullptr;
  if (!failure.bGivenUp) failure = {ErrorNumber::kQuickBooksSdkMissing, Text(failureText)};
  return Keep(std::move(failure));
}

qbxml::Failure qbxml::MakeProcessor() {
  try {
    oProcessor = oFactory();
  } catch (...) {
    return {ErrorNumber::kQuickBooksSdkMissing, {}};
  }
  return Call([](auto& processor) { processor.Create(); });
}

// Runs one operation of the processor. Events run meanwhile: the object is held (and the ticket
// copied by the callers), so that nobody can drop it under the call.
qbxml::Failure qbxml::Call(const Operation& operation) {
  try {
    const std::shared_ptr<RequestProcessor> processor = oProcessor;
    if (processor == nullptr) {
      constexpr std::int32_t kNotOpen = Raw(Hresult::kNoConnection);
      throw RequestProcessorError(kNotOpen, Text(SentenceFor(kNotOpen)));
    }
    const Outstanding outstanding(oOutstanding, *processor);
    operation(*processor);
    return {};
  } catch (const RequestProcessorError& error) {
    return CallFailed(error);
  } catch (const std::bad_alloc&) {
    return {ErrorNumber::kOutOfMemory, u"Out of memory"};
  } catch (...) {
    return {ErrorNumber::kInternalError, u"Internal error"};
  }
}

qbxml::Failure qbxml::CallFailed(const RequestProcessorError& error) {
  if (IsServerGone(error.Number)) ForgetProcessor(u"Quickbooks is gone.");
  const bool isGivenUp = error.Number == Raw(Hresult::kGivenUp);
  if (isGivenUp) ForgetProcessor(u"Quickbooks was given up.");
  const std::int32_t reduced = Reduced(error.Number);
  if (reduced > 0) return {reduced, error.Description};
  // Such a number would pass for success, or as no error of QuickBooks at all.
  return {ErrorNumber::kCannotUseCompanyFile,
          error.Description + u" (" + Hexadecimal(error.Number) + u")", isGivenUp};
}

// A dead server has neither a session nor a connection; a new one needs a new object. So does one
// whose call was given up.
void qbxml::ForgetProcessor(TextView status) {
  oProcessor = nullptr;
  bProcessorCreated = false;
  bConnectionOpen = false;
  bSessionBegun = false;
  TellStatus(status);
}

std::int32_t qbxml::Keep(Failure failure) {
  if (failure.lNumber == 0) return 0;
  lLastError = failure.lNumber;
  sLastError = std::move(failure.sDescription);
  return lLastError;
}

void qbxml::ClearLastError() {
  sLastError.clear();
  lLastError = 0;
}

void qbxml::TellStatus(TextView text) const { Notify(UpdateStatus, text); }

}  // namespace ostrel
