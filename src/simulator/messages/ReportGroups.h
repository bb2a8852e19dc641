// The groups into which reports sum postings up, in rows or in columns: by month, by customer and
// so on, under the words of SummarizeColumnsBy and SummarizeRowsBy.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "simulator/messages/ReportScope.h"

namespace ostrel::simulator {

struct ReportGroup {
  std::string key;    // groups stand in the order of their keys
  std::string title;  // a full name, or a period
};

class ReportGrouping {
 public:
  ReportGrouping(std::string_view word, const ReportScope& scope, const Company& company);

  /// False for a word that the stand-in does not have.
  bool IsKnown() const { return bKnown; }
  /// Whether there is one group of everything.
  bool IsTotal() const { return sWord == "TotalOnly"; }
  ReportGroup Of(const LedgerPosting& posting) const;
  /// The groups of the period by their keys, whether or not anything is in them: the parts of the
  /// calendar. At most kMostReportColumns and one.
  std::map<std::string, std::string> Expected() const;
  /// What a row of such a group is about: "customer"; empty for periods.
  std::string_view About() const;

 private:
  ReportGroup PartWith(std::chrono::sys_days day) const;

  std::string sWord;
  const ReportScope& oScope;
  const Company& oCompany;
  bool bKnown;
};

/// A group of the one object, and of none.
ReportGroup GroupOf(const Target& target);

/// The place of an account among all: by its type, then by its name.
std::string AccountKey(const Element& account);

}  // namespace ostrel::simulator
