// QuickBooks' own numbers lie in a row from kFirstOwn on, so the table of their sentences needs no
// numbers: a sentence's place is its number. The lists below name the numbers that have a meaning
// for a session: those after which it has ended, and those after which QuickBooks itself is gone.
#include "quickbooks/ErrorNumbers.h"

#include <algorithm>
#include <iterator>

namespace ostrel {
namespace {

constexpr std::uint32_t kReducedNumberBase = 0x80040000;
constexpr std::uint32_t kFirstOwn = 0x80040400;

// One row a number, from kFirstOwn on. Long sentences stand in two literals.
// NOLINTBEGIN(bugprone-suspicious-missing-comma)
constexpr TextView kSentences[] = {
    u"QuickBooks found an error when parsing the provided XML text stream.",
    u"Could not access QuickBooks (Failure in attempt to connection).",
    u"Unexpected error. Check the qbsdklog.txt file for possible additional information.",
    u"Could not open the specified QuickBooks company data file.",
    u"The version of QuickBooks currently running does not support qbXML.",
    u"qbXML components have not been installed.",
    u"Could not determine the version of the QuickBooks company data file, or the data file has "
    u"been modified and requires a newer version of QuickBooks.",
    u"The installation of QuickBooks appears to be incomplete. Please reinstall QuickBooks.",
    u"Could not start QuickBooks.",
    u"The current version of QuickBooks cannot work with the specified company data file.",
    u"QuickBooks company data file is already open and it is different from the one requested.",
    u"Could not get the name of the current QuickBooks company data file.",
    u"BeginSession method has not been called or it did not succeed.",
    u"The ticket parameter is invalid.",
    u"There is not enough memory to complete the request.",
    u"The OpenConnection method has not been called.",
    u"The QuickBooks company data file is currently open in a mode other than the one specified by "
    u"your application.",
    u"Before calling the BeginSession method, you must call the EndSession method to terminate the "
    u"current session.",
    u"You cannot make multiple successive calls to the OpenConnection method. Call CloseConnection "
    u"before calling OpenConnection again.",
    u"QuickBooks does not support the rollbackOnError value of the onError attribute.",
    u"A modal dialog box is showing in the QuickBooks user interface. Your application cannot "
    u"access QuickBooks until the user dismisses the dialog box.",
    u"A call to the OpenConnection method must include the name of your application.",
    u"If QuickBooks is not running, a call to the BeginSession method must include the name of the "
    u"QuickBooks company data file.",
    u"If the QuickBooks company data file is not open, a call to the BeginSession method must "
    u"include the name of the data file.",
    u"This application has not accessed this QuickBooks company data file before. Only the "
    u"QuickBooks administrator can grant an application permission to access a QuickBooks company "
    u"data file for the first time.",
    u"This application's certificate is invalid. An application must have a valid certificate to "
    u"access QuickBooks company data files.",
    u"This application does not have permission to access this QuickBooks company data file. The "
    u"QuickBooks administrator can grant access permission through the Integrated Application "
    u"preferences.",
    u"Unable to lock the necessary information to allow this application to access this company "
    u"data file. Try again later.",
    u"An internal QuickBooks error occurred while trying to access the QuickBooks company data "
    u"file.",
    u"This application is not allowed to log into this QuickBooks company data file automatically. "
    u"The QuickBooks administrator can grant permission for automatic login through the Integrated "
    u"Application preferences.",
    u"This application's certificate is expired. If you want to allow the application to log into "
    u"QuickBooks automatically, log into QuickBooks and try again. Then click Allow Always when "
    u"you are notified that the certificate has expired.",
    u"QuickBooks Basic cannot accept XML requests. Another product in the QuickBooks line, such as "
    u"QuickBooks Pro or Premier, 2002 or later, is required.",
    u"The QuickBooks user has denied access.",
    u"The returned text is passed via the qbXML COM Request Processor directly from QuickBooks to "
    u"your application and is not issued by the qbXML COM Request Processor itself. You may find "
    u"it useful to copy the text verbatim to your message window.",
    u"This application requires Single User file access mode and there is already another "
    u"application sharing data with this QuickBooks company data file.",
    u"The version of qbXML that was requested is not supported or is unknown.",
    u"QuickBooks did not finish its initialization. Please try again later.",
    u"Invalid parameter.",
    u"Scripts are not allowed to call QBXMLRP.",
    u"The QuickBooks application needs to be registered.",
    u"The version of QBXML that was requested is not supported by this version of the QBXMLRP "
    u"library.",
    u"The message set requested cannot be processed through the API that was called.",
    u"This call may not be made from a remote system.",
    u"Unsupported interface.",
    u"Certificate has been revoked.",
    u"QuickBooks did not finish opening the data file while launching its UI, and we decided to "
    u"give up. Perhaps the user did not complete the QuickBooks login process.",
    u"This call cannot be made after calling 'BeginSession' and before calling 'EndSession'.",
    u"The requested connection type could not be found.",
};
// NOLINTEND(bugprone-suspicious-missing-comma)

struct ReducedText {
  std::int32_t number;
  TextView text;
};

constexpr ReducedText kReducedTexts[] = {
    {1030,
     u"Could not determine the version of the QuickBooks company data file, or the data file has "
     u"been modified and requires a newer version of QuickBooks."},
    {1046,
     u"If QuickBooks is not running, a call to the 'BeginSession' method must include the name of "
     u"the QuickBooks company data file."},
    {1050,
     u"This application does not have permission to access this QuickBooks company data file. The "
     u"QuickBooks administrator can grant access permission through the Integrated Application "
     u"preferences."},
};

// The numbers after which the session has ended: QuickBooks was closed under it.
constexpr std::int32_t kSessionLost[] = {
    0x401,  // could not access QuickBooks
    0x40C,  // BeginSession has not been called
    0x40D,  // the ticket is invalid
    0x40F,  // OpenConnection has not been called
};

constexpr std::uint32_t kServerGone[] = {
    0x800706BA,  // RPC_S_SERVER_UNAVAILABLE
    0x800706BE,  // RPC_S_CALL_FAILED
    0x800706BF,  // RPC_S_CALL_FAILED_DNE
    0x80010007,  // RPC_E_SERVER_DIED
    0x80010012,  // RPC_E_SERVER_DIED_DNE
    0x80010108,  // RPC_E_DISCONNECTED
    0x800401FD,  // CO_E_OBJNOTCONNECTED
};

}  // namespace

std::int32_t Raw(std::int32_t reduced) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(reduced) + kReducedNumberBase);
}

std::int32_t Reduced(std::int32_t raw) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(raw) - kReducedNumberBase);
}

TextView SentenceFor(std::int32_t raw) {
  const std::uint32_t row = static_cast<std::uint32_t>(raw) - kFirstOwn;
  return row < std::size(kSentences) ? kSentences[row] : TextView();
}

std::optional<TextView> TextFor(std::int32_t number) {
  if (number == kParseError) return kSentences[0];
  if (number > kParseError) {
    const auto* found = std::ranges::find(kReducedTexts, number, &ReducedText::number);
    if (found == std::end(kReducedTexts)) return std::nullopt;
    return found->text;
  }
  const TextView sentence = SentenceFor(number);
  if (sentence.empty()) return std::nullopt;
  return sentence;
}

bool IsSessionLost(std::int32_t reduced) {
  return std::ranges::find(kSessionLost, reduced) != std::end(kSessionLost);
}

bool IsServerGone(std::int32_t raw) {
  return std::ranges::find(kServerGone, static_cast<std::uint32_t>(raw)) != std::end(kServerGone);
}

}  // namespace ostrel
