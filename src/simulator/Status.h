// The outcome of one message, as its response element carries it.
#pragma once

#include <string>
#include <string_view>

namespace ostrel::simulator {

struct Status {
  int code = 0;
  std::string_view severity = "Info";  // "Info", "Warn" or "Error"
  std::string message = "Status OK";

  bool IsError() const { return severity == "Error"; }
};

Status NoMatch();
Status NotAllFound(std::string_view missing);
Status InvalidListId(std::string_view id);
Status TooLong(std::string_view value, std::string_view field);
Status CannotStore(std::string_view value, std::string_view field, std::string_view why);
Status NameInUse(std::string_view name);
Status CannotSave(std::string_view list, std::string_view name, std::string_view why);
Status NotProcessed();

}  // namespace ostrel::simulator
