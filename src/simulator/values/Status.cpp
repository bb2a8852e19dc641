// The texts are QuickBooks' own, which clients show to their users. Most are a fixed sentence
// around the value and the field at fault; kinds of values share a sentence and differ in
// their number.
#include "simulator/values/Status.h"

#include <initializer_list>

namespace ostrel::simulator {
namespace {

constexpr std::string_view kWarn = "Warn";
constexpr std::string_view kError = "Error";
constexpr std::string_view kBecause = "  QuickBooks error message: ";
constexpr std::string_view kNoSuchRecord =
    "Invalid argument.  The specified record does not exist in the list.";

std::string Sentence(std::initializer_list<std::string_view> parts) {
  std::string sentence;
  for (const std::string_view part : parts) sentence.append(part);
  return sentence;
}

Status CannotConvert(int code, std::string_view type, std::string_view value,
                     std::string_view field) {
  return {code, kError,
          Sentence({"There was an error when converting the ", type, " value \"", value,
                    "\" in the field \"", field, "\"."})};
}

}  // namespace

Status NoMatch() {
  return {1, "Info", "A query request did not find a matching object in QuickBooks"};
}

Status NotAllFound(std::string_view missing) {
  return {500, kWarn,
          Sentence({"The query request has not been fully completed. There was a required element "
                    "(\"",
                    missing, "\") that could not be found in QuickBooks."})};
}

Status InvalidId(std::string_view id, std::string_view field) {
  const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
  std::string words;
  bool afterCapital = true;
  for (const char c : field) {
    if (isCapital(c) && !afterCapital) words += ' ';
    words += isCapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
    afterCapital = isCapital(c);
  }
  return {3000, kError,
          Sentence({"The given object ID \"", id, "\" in the field \"", words, "\" is invalid."})};
}

Status BadDate(std::string_view value, std::string_view field) {
  return CannotConvert(3020, "date", value, field);
}

Status BadMoment(std::string_view value, std::string_view field) {
  return CannotConvert(3010, "date-time", value, field);
}

Status BadInterval(std::string_view value, std::string_view field) {
  return CannotConvert(3030, "time interval", value, field);
}

Status BadFloat(std::string_view value, std::string_view field) {
  return CannotConvert(3045, "float", value, field);
}

Status BadAmount(std::string_view value, std::string_view field) {
  return CannotConvert(3040, "amount", value, field);
}

Status BadPrice(std::string_view value, std::string_view field) {
  return CannotConvert(3045, "price", value, field);
}

Status BadPercent(std::string_view value, std::string_view field) {
  return CannotConvert(3050, "percent", value, field);
}

Status BadQuantity(std::string_view value, std::string_view field) {
  return CannotConvert(3060, "quantity", value, field);
}

Status BadInteger(std::string_view value, std::string_view field) {
  return CannotConvert(3065, "integer", value, field);
}

Status TooLong(std::string_view value, std::string_view field) {
  return {3070, kError,
          Sentence({"The string \"", value, "\" in the field \"", field, "\" is too long."})};
}

Status CannotStore(std::string_view value, std::string_view field, std::string_view why) {
  return {3090, kError,
          Sentence({"There was an error when storing \"", value, "\" in the \"", field, "\" field.",
                    kBecause, why})};
}

Status NameInUse(std::string_view name) {
  return {3100, kError,
          Sentence({"The name \"", name, "\" of the list element is already in use."})};
}

Status NotFound(std::string_view id) {
  return {3120, kError,
          Sentence({"Object \"", id, "\" specified in the request cannot be found.", kBecause,
                    kNoSuchRecord})};
}

Status InvalidReference(std::string_view target, std::string_view name, std::string_view where) {
  return {3140, kError,
          Sentence({"There is an invalid reference to QuickBooks ", target, " \"", name,
                    "\" in the ", where, ".", kBecause, kNoSuchRecord})};
}

Status WrongReference(std::string_view target, std::string_view name, std::string_view where) {
  return {3150, kError,
          Sentence({"There is an invalid class type in the reference to QuickBooks ", target, " \"",
                    name, "\" in the ", where, "."})};
}

Status CannotDelete(std::string_view id, std::string_view why) {
  return {
      3160, kError,
      Sentence({"Cannot delete the object specified by the id = \"", id, "\".", kBecause, why})};
}

Status CannotModify(std::string_view what, std::string_view why) {
  return {3170, kError,
          Sentence({"There was an error when modifying a ", what, ".", kBecause, why})};
}

Status CannotSave(std::string_view what, std::string_view why) {
  return {3180, kError, Sentence({"There was an error when saving a ", what, ".", kBecause, why})};
}

Status OutOfDate(std::string_view editSequence) {
  return {3200, kError,
          Sentence({"The provided edit sequence \"", editSequence, "\" is out-of-date."})};
}

Status InvalidValue(std::string_view value, std::string_view field, std::string_view why) {
  return {
      3210, kError,
      Sentence({"The \"", field, "\" field has an invalid value \"", value, "\".", kBecause, why})};
}

Status NotHere(std::string_view message) {
  return {3250, kError,
          Sentence({"The stand-in for QuickBooks does not have the message \"", message,
                    "\". QuickBooks itself has it."})};
}

Status NotInReports(std::string_view value, std::string_view field) {
  return {3250, kError,
          Sentence({"The stand-in for QuickBooks does not make this report with the value \"",
                    value, "\" in the field \"", field, "\". QuickBooks itself may."})};
}

Status NoWindow() {
  return {3250, kError, "The stand-in for QuickBooks has no window, and cannot show a form."};
}

Status NotProcessed() { return {3231, kError, "The request has not been processed."}; }

Status InvalidIterator(std::string_view id) {
  return {3391, kError,
          Sentence({"The iterator ID \"", id, "\" is not valid, or its iterator has ended."})};
}

void Fail(std::uint32_t hresult) {
  const auto number = static_cast<std::int32_t>(hresult);
  throw RequestProcessorError(number, Text(SentenceFor(number)));
}

void FailAsGivenUp() { throw RequestProcessorError(Raw(Hresult::kGivenUp), Text(kGivenUpText)); }

}  // namespace ostrel::simulator
