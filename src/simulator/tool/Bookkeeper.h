// Keeps the books of a company in memory, through the messages that a client would send.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "simulator/company/CompanyStorage.h"
#include "simulator/company/OpenCompany.h"
#include "simulator/messages/Session.h"

namespace ostrel::simulator {

/// Keeps nothing: the company is written when it is complete.
class NoStorage : public CompanyStorage {
 public:
  int Read(TextView, std::string&) override;
  int CheckWritable(TextView, FileMark&) override { return 0; }
  int WriteFrom(std::int64_t, TextView, std::string_view) override { return 0; }
  int Rename(TextView, TextView) override { return 0; }
  int Erase(TextView) override { return 0; }
};

class Bookkeeper {
 public:
  /// The company file to begin with, which must be one.
  explicit Bookkeeper(std::string_view file);

  /// The moment of all that follows, in the business' own time zone.
  void SetTime(std::chrono::sys_days day, int minuteOfDay);
  /// "Customer" and the children of a CustomerAdd in their order; what the books hold then. Raises
  /// std::logic_error with the status message when it is refused.
  const Element& Add(std::string_view kind, const Element& fields);
  const Company& Books() const { return oCompany.Data(); }

 private:
  NoStorage oStorage;
  Stamp oNow;
  OpenCompany oCompany;
  Session oSession;
};

}  // namespace ostrel::simulator
