// The outcome of one message, as its response element carries it; and the errors with which the
// stand-in refuses a whole operation.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "quickbooks/ErrorNumbers.h"
#include "quickbooks/RequestProcessor.h"

namespace ostrel::simulator {

struct Status {
  int code = 0;
  std::string_view severity = "Info";  // "Info", "Warn" or "Error"
  std::string message = "Status OK";

  bool IsError() const { return severity == "Error"; }
};

Status NoMatch();
Status NotAllFound(std::string_view missing);
/// `field` is the element's name.
Status InvalidId(std::string_view id, std::string_view field);
Status BadDate(std::string_view value, std::string_view field);
Status BadMoment(std::string_view value, std::string_view field);
Status BadInterval(std::string_view value, std::string_view field);
Status BadFloat(std::string_view value, std::string_view field);
Status BadAmount(std::string_view value, std::string_view field);
Status BadPrice(std::string_view value, std::string_view field);
Status BadPercent(std::string_view value, std::string_view field);
Status BadQuantity(std::string_view value, std::string_view field);
Status BadInteger(std::string_view value, std::string_view field);
Status TooLong(std::string_view value, std::string_view field);
Status CannotStore(std::string_view value, std::string_view field, std::string_view why);
Status NameInUse(std::string_view name);
Status NotFound(std::string_view id);
/// `target` is the kind that was referred to, `where` the message's object.
Status InvalidReference(std::string_view target, std::string_view name, std::string_view where);
Status WrongReference(std::string_view target, std::string_view name, std::string_view where);
Status CannotDelete(std::string_view id, std::string_view why);
/// `what` as "Customers list, element "Jo"" or "Invoice".
Status CannotModify(std::string_view what, std::string_view why);
Status CannotSave(std::string_view what, std::string_view why);
Status OutOfDate(std::string_view editSequence);
Status InvalidValue(std::string_view value, std::string_view field, std::string_view why);
Status NotProcessed();
/// Of a message that QuickBooks has and the stand-in does not.
Status NotHere(std::string_view message);
/// Of a report that QuickBooks makes and the stand-in does not, for what this field says.
Status NotInReports(std::string_view value, std::string_view field);
/// Of a message that shows a form to the user.
Status NoWindow();
Status InvalidIterator(std::string_view id);

/// Raises RequestProcessorError with the HRESULT and QuickBooks' sentence for it.
[[noreturn]] void Fail(std::uint32_t hresult);
[[noreturn]] inline void Fail(Hresult hresult) { Fail(static_cast<std::uint32_t>(hresult)); }
/// Raises the error of an operation that was given up.
[[noreturn]] void FailAsGivenUp();

}  // namespace ostrel::simulator
