#include "simulator/Status.h"

#include <initializer_list>

namespace ostrel::simulator {
namespace {

constexpr std::string_view kWarn = "Warn";
constexpr std::string_view kError = "Error";

std::string Sentence(std::initializer_list<std::string_view> parts) {
  std::string sentence;
  for (const std::string_view part : parts) sentence.append(part);
  return sentence;
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

Status InvalidListId(std::string_view id) {
  return {3000, kError,
          Sentence({"The given object ID \"", id, "\" in the field \"list id\" is invalid."})};
}

Status TooLong(std::string_view value, std::string_view field) {
  return {3070, kError,
          Sentence({"The string \"", value, "\" in the field \"", field, "\" is too long."})};
}

Status CannotStore(std::string_view value, std::string_view field, std::string_view why) {
  return {3090, kError,
          Sentence({"There was an error when storing \"", value, "\" in the \"", field,
                    "\" field.  QuickBooks error message: ", why})};
}

Status NameInUse(std::string_view name) {
  return {3100, kError,
          Sentence({"The name \"", name, "\" of the list element is already in use."})};
}

Status CannotSave(std::string_view list, std::string_view name, std::string_view why) {
  return {3180, kError,
          Sentence({"There was an error when saving a ", list, " list, element \"", name,
                    "\".  QuickBooks error message: ", why})};
}

Status NotProcessed() { return {3231, kError, "The request has not been processed."}; }

}  // namespace ostrel::simulator
