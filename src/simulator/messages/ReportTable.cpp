#include "simulator/messages/ReportTable.h"

#include <algorithm>

#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

void WriteColumn(XmlWriter& xml, const ReportColumn& column, std::size_t number) {
  const Attribute description[] = {{"colID", std::to_string(number)},
                                   {"dataType", std::string(column.dataType)}};
  xml.Open("ColDesc", description);
  std::vector<Attribute> title = {{"titleRow", "1"}};
  if (!column.title.empty()) title.push_back({"value", column.title});
  xml.Empty("ColTitle", title);
  xml.Leaf("ColType", column.type);
  xml.Close();
}

std::string_view NameOf(RowForm form) {
  constexpr std::string_view kNames[] = {"TextRow", "DataRow", "SubtotalRow", "TotalRow"};
  return kNames[static_cast<std::size_t>(form)];
}

// Empty cells are left out.
void WriteRow(XmlWriter& xml, const ReportRow& row, std::size_t number) {
  std::vector<Attribute> attributes = {{"rowNumber", std::to_string(number)}};
  if (row.form == RowForm::kText) {
    attributes.push_back({"value", row.cells.front()});
    xml.Empty(NameOf(row.form), attributes);
    return;
  }
  xml.Open(NameOf(row.form), attributes);
  if (!row.about.empty()) {
    const Attribute data[] = {{"rowType", std::string(row.about)}, {"value", row.name}};
    xml.Empty("RowData", data);
  }
  for (std::size_t i = 0; i < row.cells.size(); ++i) {
    if (row.cells[i].empty()) continue;
    const Attribute cell[] = {{"colID", std::to_string(i + 1)}, {"value", row.cells[i]}};
    xml.Empty("ColData", cell);
  }
  xml.Close();
}

}  // namespace

void WriteReport(XmlWriter& xml, const Report& report) {
  xml.Open("ReportRet");
  xml.Leaf("ReportTitle", report.title);
  xml.Leaf("ReportSubtitle", report.subtitle);
  if (report.hasBasis) xml.Leaf("ReportBasis", "Accrual");
  xml.Leaf("NumRows", std::to_string(report.rows.size()));
  xml.Leaf("NumColumns", std::to_string(report.columns.size()));
  xml.Leaf("NumColTitleRows", "1");
  std::size_t number = 0;
  for (const ReportColumn& column : report.columns) WriteColumn(xml, column, ++number);
  if (!report.rows.empty()) {
    xml.Open("ReportData");
    number = 0;
    for (const ReportRow& row : report.rows) {
      Breathe();
      WriteRow(xml, row, ++number);
    }
    xml.Close();
  }
  xml.Close();
}

}  // namespace ostrel::simulator
