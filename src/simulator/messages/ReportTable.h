// A report as a table: what all of them are made into, and how it is written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/values/Decimal.h"
#include "simulator/values/Status.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {

struct ReportColumn {
  std::string title;
  std::string_view type = "Amount";       // ColType
  std::string_view dataType = "AMTTYPE";  // of its cells
};

enum class RowForm { kText, kData, kSubtotal, kTotal };

struct ReportRow {
  RowForm form;
  std::vector<std::string> cells = {};  // of the columns; of a text row, the text
  /// The object that a row of data is about: "account", "customer", "item" and its full name.
  std::string_view about = {};
  std::string name = {};
};

struct Report {
  std::string title;
  std::string subtitle;
  bool hasBasis = true;  // of those that are kept on a basis, which is accrual
  std::vector<ReportColumn> columns = {};
  std::vector<ReportRow> rows = {};
  /// Refuses the report instead.
  Status status = {};

  void AddText(std::string text) { rows.push_back({RowForm::kText, {std::move(text)}}); }
};

/// A report of several thousand columns is a mistake of its client.
inline constexpr std::size_t kMostReportColumns = 1000;

/// The element ReportRet.
void WriteReport(XmlWriter& xml, const Report& report);

inline std::string AmountText(Decimal amount) { return amount.Cents().ToString(2); }

}  // namespace ostrel::simulator
