#include "simulator/tool/CompanyTables.h"

#include <algorithm>
#include <vector>

#include "simulator/company/Objects.h"

namespace ostrel::simulator {
namespace {

struct Column {
  std::string_view path, title;
  bool number = false;
};

// Columns of lists come before those of transactions; the full name takes the place of the name.
constexpr Column kColumns[] = {
    {"TxnDate", "Date"},
    {"RefNumber", "Number"},
    {"FullName", "Name"},
    {"Name", "Name"},
    {"Initial", "Initial"},
    {"SalesRepEntityRef/FullName", "Name"},
    {"CustomerRef/FullName", "Customer"},
    {"VendorRef/FullName", "Vendor"},
    {"PayeeEntityRef/FullName", "Payee"},
    {"AccountNumber", "Account"},
    {"AccountType", "Type"},
    {"CustomerTypeRef/FullName", "Type"},
    {"Phone", "Phone"},
    {"TermsRef/FullName", "Terms"},
    {"StdDueDays", "Days", true},
    {"TaxRate", "Rate", true},
    {"SalesPrice", "Price", true},
    {"SalesOrPurchase/Price", "Price", true},
    {"QuantityOnHand", "On hand", true},
    {"Subtotal", "Subtotal", true},
    {"SalesTaxTotal", "Tax", true},
    {"TotalAmount", "Total", true},
    {"AmountDue", "Total", true},
    {"Amount", "Amount", true},
    {"BalanceRemaining", "Open", true},
    {"OpenAmount", "Open", true},
    {"UnusedPayment", "Unused", true},
    {"Balance", "Balance", true},
    {"TotalBalance", "With jobs", true},
    {"Memo", "Memo"},
};
constexpr std::size_t kWidest = 40;

Text Cell(const Element& object, const Column& column) {
  const Element* found = Follow(object, column.path);
  Text text = found ? FromUtf8(found->text) : Text();
  std::ranges::replace_if(
      text, [](char16_t c) { return c < u' '; }, u' ');
  if (text.size() > kWidest) text = text.substr(0, kWidest - 1) + u'\u2026';
  return text;
}

using Cells = std::vector<Text>;

std::vector<Column> ColumnsOf(const ObjectList& list) {
  std::vector<Column> columns;
  for (const Column& column : kColumns) {
    if (column.path == "Name" && list.OfKind().Has("FullName")) continue;
    const bool used = std::ranges::any_of(list.InOrder(), [&](const auto& entry) {
      return Follow(entry.second, column.path) != nullptr;
    });
    if (used) columns.push_back(column);
  }
  return columns;
}

void AppendRow(Text& table, const Cells& row, const std::vector<Column>& columns,
               const std::vector<std::size_t>& widths) {
  Text line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Text blanks(widths[i] - row[i].size(), u' ');
    line += columns[i].number ? blanks + row[i] : row[i] + blanks;
    line += u"  ";
  }
  table += line.substr(0, line.find_last_not_of(u' ') + 1);
  table += u'\n';
}

Text TableOf(const ObjectList& list) {
  const std::vector<Column> columns = ColumnsOf(list);
  std::vector<Cells> rows(1);
  for (const Column& column : columns) rows[0].push_back(FromAscii(column.title));
  for (const auto& [key, object] : list.InOrder()) {
    if (object.Find(kBuiltIn)) continue;
    Cells& row = rows.emplace_back();
    for (const Column& column : columns) row.push_back(Cell(object, column));
  }
  std::vector<std::size_t> widths(columns.size());
  for (const Cells& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  Text table = FromAscii(list.OfKind().name) + u" (" +
               ToText(static_cast<std::int64_t>(rows.size() - 1)) + u")\n";
  for (const Cells& row : rows) AppendRow(table, row, columns, widths);
  return table;
}

}  // namespace

Text CompanyTables(const Company& company, const KindList& kinds) {
  Text tables;
  for (const Kind* kind : kinds) {
    if (CountOwn(company.List(*kind)) == 0) continue;
    if (!tables.empty()) tables += u'\n';
    tables += TableOf(company.List(*kind));
  }
  return tables;
}

}  // namespace ostrel::simulator
