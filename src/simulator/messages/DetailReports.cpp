// Reports that list postings, transactions or what is open, one in a line. A table says of each
// report which columns it has unless the message chooses others, and by what its lines are grouped;
// another table says what stands in each column.
#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "simulator/company/OpenAmounts.h"
#include "simulator/company/Postings.h"
#include "simulator/messages/ReportGroups.h"
#include "simulator/messages/Reports.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Periods.h"

namespace ostrel::simulator {
namespace {

struct Line {
  LedgerPosting posting;
  Target entity;
  std::string split = {};  // the account on the other side
  Decimal amount = {};     // as it is shown
  Decimal balance = {};    // of the group up to this line
  Decimal open = {};
  std::string aging = {};  // days behind the due date
};

std::string TextOf(const Line& line, std::string_view field) {
  const Element* ofLine = line.posting.line ? line.posting.line->Child(field) : nullptr;
  return std::string(ofLine ? std::string_view(ofLine->text)
                            : line.posting.source->ChildText(field));
}

std::string NameOf(const Line& line, std::string_view reference) {
  const Element* ofLine = line.posting.line ? line.posting.line->Child(reference) : nullptr;
  const Element* found = ofLine ? ofLine : line.posting.source->Child(reference);
  return std::string(found ? found->ChildText("FullName") : std::string_view());
}

struct ColumnRow {
  std::string_view word;  // of IncludeColumn, and its ColType
  std::string_view title;
  std::string_view dataType;
  std::string (*cell)(const Line& line);
  bool isSummed = false;
};

std::string AmountCell(const Line& line) { return AmountText(line.amount); }
std::string BalanceCell(const Line& line) { return AmountText(line.balance); }
std::string OpenCell(const Line& line) { return AmountText(line.open); }
std::string DebitCell(const Line& line) {
  return line.posting.amount > Decimal() ? AmountText(line.posting.amount) : "";
}
std::string CreditCell(const Line& line) {
  return line.posting.amount < Decimal() ? AmountText(line.posting.amount.Negated()) : "";
}
std::string AccountCell(const Line& line) {
  return std::string(line.posting.account ? line.posting.account->ChildText("FullName")
                                          : std::string_view());
}
std::string EntityCell(const Line& line) {
  return line.entity ? std::string(FullNameOf(*line.entity.kind, *line.entity.object)) : "";
}
std::string TypeCell(const Line& line) {
  return line.posting.IsOpening() ? "Opening Balance" : std::string(line.posting.kind->name);
}
std::string MemoCell(const Line& line) {
  for (const std::string_view field : {"Desc", "Memo"}) {
    std::string text = TextOf(line, field);
    if (!text.empty()) return text;
  }
  return "";
}

constexpr ColumnRow kColumns[] = {
    {"Account", "Account", "STRTYPE", AccountCell},
    {"Aging", "Aging", "INTTYPE", [](const Line& line) { return line.aging; }},
    {"Amount", "Amount", "AMTTYPE", AmountCell, true},
    {"Class", "Class", "STRTYPE", [](const Line& line) { return NameOf(line, "ClassRef"); }},
    {"Credit", "Credit", "AMTTYPE", CreditCell, true},
    {"Date", "Date", "DATETYPE", [](const Line& line) { return std::string(line.posting.date); }},
    {"Debit", "Debit", "AMTTYPE", DebitCell, true},
    {"DueDate", "Due Date", "DATETYPE",
     [](const Line& line) { return std::string(line.posting.source->ChildText("DueDate")); }},
    {"FOB", "FOB", "STRTYPE", [](const Line& line) { return TextOf(line, "FOB"); }},
    {"Item", "Item", "STRTYPE", [](const Line& line) { return NameOf(line, "ItemRef"); }},
    {"ItemDesc", "Item Description", "STRTYPE",
     [](const Line& line) { return TextOf(line, "Desc"); }},
    {"Memo", "Memo", "STRTYPE", MemoCell},
    {"ModifiedTime", "Entered/Last Modified", "DATETIMETYPE",
     [](const Line& line) { return std::string(line.posting.source->ChildText("TimeModified")); }},
    {"Name", "Name", "STRTYPE", EntityCell},
    {"OpenBalance", "Open Balance", "AMTTYPE", OpenCell, true},
    {"PONumber", "P. O. #", "STRTYPE", [](const Line& line) { return TextOf(line, "PONumber"); }},
    {"PaymentMethod", "Pay Meth", "STRTYPE",
     [](const Line& line) { return NameOf(line, "PaymentMethodRef"); }},
    {"Quantity", "Qty", "QUANTYPE", [](const Line& line) { return TextOf(line, "Quantity"); }},
    {"RefNumber", "Num", "STRTYPE",
     [](const Line& line) { return std::string(line.posting.source->ChildText("RefNumber")); }},
    {"RunningBalance", "Balance", "AMTTYPE", BalanceCell},
    {"SalesRep", "Rep", "STRTYPE", [](const Line& line) { return NameOf(line, "SalesRepRef"); }},
    {"ShipDate", "Ship Date", "DATETYPE",
     [](const Line& line) { return TextOf(line, "ShipDate"); }},
    {"ShipMethod", "Via", "STRTYPE",
     [](const Line& line) { return NameOf(line, "ShipMethodRef"); }},
    {"SplitAccount", "Split", "STRTYPE", [](const Line& line) { return line.split; }},
    {"Terms", "Terms", "STRTYPE", [](const Line& line) { return NameOf(line, "TermsRef"); }},
    {"TxnID", "Trans ID", "IDTYPE",
     [](const Line& line) { return std::string(line.posting.source->ChildText("TxnID")); }},
    {"TxnNumber", "Trans #", "INTTYPE",
     [](const Line& line) { return std::string(line.posting.source->ChildText("TxnNumber")); }},
    {"TxnType", "Type", "STRTYPE", TypeCell},
};

constexpr std::string_view kPostingColumns[] = {
    "TxnType", "Date", "RefNumber", "Name", "Memo", "SplitAccount", "Amount", "RunningBalance"};
constexpr std::string_view kListColumns[] = {"TxnType", "Date",    "RefNumber",    "Name",
                                             "Memo",    "Account", "SplitAccount", "Amount"};
constexpr std::string_view kInvoiceColumns[] = {"TxnType", "Date",  "RefNumber",  "Terms",
                                                "DueDate", "Aging", "OpenBalance"};
constexpr std::string_view kBillColumns[] = {"TxnType", "Date",  "RefNumber",
                                             "DueDate", "Aging", "OpenBalance"};

struct Detail {
  std::string_view type;
  std::string_view rows;  // empty: as SummarizeRowsBy says
  std::span<const std::string_view> columns = {};
  bool ofProfitAndLoss = false;  // whose accounts are shown as they grow
  bool bringsForward = false;    // balances from before the period
};
constexpr Detail kDetails[] = {
    {"GeneralLedger", "Account", kPostingColumns, false, true},
    {"TxnDetailByAccount", "Account", kPostingColumns},
    {"ProfitAndLossDetail", "Account", kPostingColumns, true},
    {"CustomTxnDetail", ""},
    {"TxnListByDate", "TotalOnly", kListColumns},
    {"TxnListByCustomer", "Customer", kListColumns},
    {"TxnListByVendor", "Vendor", kListColumns},
    {"OpenInvoices", "Payee", kInvoiceColumns},
    {"UnpaidBillsDetail", "Payee", kBillColumns},
};

const Detail& DetailOf(const ReportOrder& order) {
  return *std::ranges::find(kDetails, order.type, &Detail::type);
}

using Columns = std::vector<const ColumnRow*>;

// The chosen columns, or those of the report. Refuses one that the stand-in does not have.
Columns ColumnsOf(const ReportOrder& order, const Detail& detail, Report& report) {
  std::vector<std::string_view> words;
  for (const Element& child : order.call.element.children) {
    if (child.name == "IncludeColumn") words.push_back(child.text);
  }
  if (words.empty()) words.assign(detail.columns.begin(), detail.columns.end());
  Columns columns;
  for (const std::string_view word : words) {
    const auto row = std::ranges::find(kColumns, word, &ColumnRow::word);
    if (row == std::end(kColumns) || columns.size() == kMostReportColumns) {
      report.status = NotInReports(word, "IncludeColumn");
      return {};
    }
    columns.push_back(&*row);
  }
  return columns;
}

struct Group {
  std::string title = {};
  Decimal brought = {};
  std::vector<Line> lines = {};
};
using Groups = std::map<std::string, Group>;

// The accounts of one transaction after another, to name the other side of each posting.
class SplitFinder {
 public:
  explicit SplitFinder(const Company& company) : oCompany(company) {}

  std::string Of(const LedgerPosting& posting) {
    if (posting.IsOpening()) return "";
    if (posting.source != pSource) Learn(posting);
    const std::string own(posting.account->ChildText("ListID"));
    if (oAccounts.size() == 2) {
      return NameOfAccount(*oAccounts.begin() == own ? *oAccounts.rbegin() : *oAccounts.begin());
    }
    return posting.line && sHead != own ? NameOfAccount(sHead) : "-SPLIT-";
  }

 private:
  void Learn(const LedgerPosting& posting) {
    pSource = posting.source;
    oAccounts.clear();
    sHead.clear();
    ForEachEntry(*posting.kind, *posting.source, oCompany, [&](const Entry& entry) {
      if (!entry.line && sHead.empty()) sHead = entry.account;
      oAccounts.insert(entry.account);
    });
  }

  std::string NameOfAccount(std::string_view id) const {
    const Target account = FindById(oCompany, KindsNamed("Account"), id);
    return account ? std::string(FullNameOf(*account.kind, *account.object)) : "-SPLIT-";
  }

  const Company& oCompany;
  const Element* pSource = nullptr;
  std::set<std::string> oAccounts = {};
  std::string sHead = {};  // the account of the whole transaction
};

// The groups in their order with running balances, and their sums.
class DetailWriter {
 public:
  DetailWriter(const Columns& columns, Report& report) : oColumns(columns), oReport(report) {
    report.columns.push_back({"", "Blank", "STRTYPE"});
    for (const ColumnRow* column : columns) {
      report.columns.push_back({std::string(column->title), column->word, column->dataType});
    }
  }

  void Write(Groups& groups) {
    std::vector<Decimal> total(oColumns.size());
    for (auto& [key, group] : groups) {
      if (!group.title.empty()) Open(group);
      std::vector<Decimal> sums(oColumns.size());
      Decimal balance = group.brought;
      std::ranges::stable_sort(group.lines, {}, [](const Line& line) { return line.posting.date; });
      for (Line& line : group.lines) {
        Breathe();
        line.balance = balance += line.amount;
        AddLine(line, sums);
      }
      for (std::size_t i = 0; i < sums.size(); ++i) total[i] += sums[i];
      if (!group.title.empty()) AddSums(RowForm::kSubtotal, "Total " + group.title, sums, balance);
    }
    AddSums(RowForm::kTotal, "TOTAL", total, std::nullopt);
  }

 private:
  void Open(const Group& group) {
    if (group.brought.IsZero()) return oReport.AddText(group.title);
    ReportRow row{RowForm::kData, {group.title}};
    for (const ColumnRow* column : oColumns) {
      const bool isBalance = column->word == "RunningBalance";
      row.cells.push_back(isBalance ? AmountText(group.brought) : "");
    }
    oReport.rows.push_back(std::move(row));
  }

  void AddLine(const Line& line, std::vector<Decimal>& sums) {
    ReportRow row{RowForm::kData, {""}};
    for (std::size_t i = 0; i < oColumns.size(); ++i) {
      row.cells.push_back(oColumns[i]->cell(line));
      if (oColumns[i]->isSummed) sums[i] += Decimal::Of(row.cells.back());
    }
    oReport.rows.push_back(std::move(row));
  }

  void AddSums(RowForm form, std::string label, const std::vector<Decimal>& sums,
               std::optional<Decimal> balance) {
    ReportRow row{form, {std::move(label)}};
    for (std::size_t i = 0; i < oColumns.size(); ++i) {
      const bool isBalance = oColumns[i]->word == "RunningBalance" && balance;
      row.cells.push_back(oColumns[i]->isSummed ? AmountText(sums[i])
                          : isBalance           ? AmountText(*balance)
                                                : "");
    }
    oReport.rows.push_back(std::move(row));
  }

  const Columns& oColumns;
  Report& oReport;
};

// Fills in the balances of accounts before the period. Those of the profit and loss begin with the
// fiscal year.
void BringForward(const ReportOrder& order, const ReportGrouping& grouping, Groups& groups) {
  const std::string& from = order.scope.period.from;
  std::map<const Element*, Decimal> explained;
  ForEachInScope(order.scope, {}, order.company, [&](const LedgerPosting& posting) {
    explained[posting.account] += posting.amount;
    const bool isOfOtherYear =
        IsOfProfitAndLoss(*posting.account) && posting.date.substr(0, 4) != from.substr(0, 4);
    if (posting.date >= from || isOfOtherYear) return;
    const ReportGroup key = grouping.Of(posting);
    Group& group = groups[key.key];
    group.title = key.title;
    group.brought += posting.amount;
  });
  if (!order.scope.filters.empty()) return;
  static const Kind& accounts = *FindKind("Account");
  for (const auto& [key, account] : order.company.List(accounts).InOrder()) {
    const Decimal rest = DebitBalanceOf(accounts, account) - explained[&account];
    if (IsOfProfitAndLoss(account) || rest.IsZero()) continue;
    Group& group = groups[AccountKey(account)];
    group.title = FullNameOf(accounts, account);
    group.brought += rest;
  }
}

void AddLine(const ReportGroup& key, Line line, Groups& groups) {
  Group& group = groups[key.key];
  group.title = key.title;
  group.lines.push_back(std::move(line));
}

// The columns and the groups of a report; a report that cannot have them is refused.
struct DetailPlan {
  const Detail& detail;
  Columns columns;
  ReportGrouping grouping;

  DetailPlan(const ReportOrder& order, Report& report)
      : detail(DetailOf(order)),
        columns(ColumnsOf(order, detail, report)),
        grouping(RowsWord(order), order.scope, order.company) {
    if (!grouping.IsKnown()) report.status = NotInReports(RowsWord(order), "SummarizeRowsBy");
  }

  std::string_view RowsWord(const ReportOrder& order) const {
    return order.Choice("SummarizeRowsBy", detail.rows);
  }
  // The one group of a report in total has no title.
  ReportGroup Of(const LedgerPosting& posting) const {
    ReportGroup group = grouping.Of(posting);
    if (grouping.IsTotal()) group.title.clear();
    if (group.title.empty() && !grouping.IsTotal()) group.title = "No name";
    return group;
  }
};

bool HasColumn(const Columns& columns, std::string_view word) {
  return std::ranges::any_of(columns, [&](const ColumnRow* row) { return row->word == word; });
}

bool GrowsInCredit(const Element& account) {
  return account.ChildText("AccountType").ends_with("Income");
}

}  // namespace

void MakePostingList(const ReportOrder& order, Report& report) {
  DetailPlan plan(order, report);
  if (!report.status.IsError() && HasColumn(plan.columns, "OpenBalance")) {
    report.status = NotInReports("OpenBalance", "IncludeColumn");
  }
  if (report.status.IsError()) return;
  const bool withSplit = HasColumn(plan.columns, "SplitAccount");
  SplitFinder splits(order.company);
  Groups groups;
  ForEachInScope(order.scope, order.scope.period, order.company, [&](const LedgerPosting& posting) {
    const bool inCredit = plan.detail.ofProfitAndLoss;
    if (inCredit && !IsOfProfitAndLoss(*posting.account)) return;
    Line line{.posting = posting, .entity = EntityOf(posting, order.company)};
    const bool turns = inCredit && GrowsInCredit(*posting.account);
    line.amount = turns ? posting.amount.Negated() : posting.amount;
    if (withSplit) line.split = splits.Of(posting);
    AddLine(plan.Of(posting), std::move(line), groups);
  });
  if (plan.detail.bringsForward) BringForward(order, plan.grouping, groups);
  DetailWriter(plan.columns, report).Write(groups);
}

// The first posting of a transaction stands for it.
void MakeTransactionList(const ReportOrder& order, Report& report) {
  DetailPlan plan(order, report);
  if (report.status.IsError()) return;
  SplitFinder splits(order.company);
  Groups groups;
  const Element* last = nullptr;
  ForEachInScope(order.scope, order.scope.period, order.company, [&](const LedgerPosting& posting) {
    if (posting.IsOpening() || posting.source == last) return;
    last = posting.source;
    AddLine(plan.Of(posting),
            {.posting = posting,
             .entity = EntityOf(posting, order.company),
             .split = splits.Of(posting),
             .amount = posting.amount},
            groups);
  });
  DetailWriter(plan.columns, report).Write(groups);
}

void MakeOpenItemList(const ReportOrder& order, Report& report) {
  DetailPlan plan(order, report);
  if (report.status.IsError()) return;
  const bool isOfToday = order.Choice("ReportOpenBalanceAsOf", "ReportEndDate") == "Today";
  const auto asOf = isOfToday ? order.scope.today : order.scope.end;
  const bool isPayable = order.type == "UnpaidBillsDetail";
  Groups groups;
  for (const OpenItem& item :
       OpenItemsOf(order.company, isPayable ? "AccountsPayable" : "AccountsReceivable",
                   DateText(asOf), [&](const LedgerPosting& posting) {
                     return order.scope.Passes(posting, order.company);
                   })) {
    if (item.open.IsZero()) continue;
    const auto due = ParseDate(item.dueDate);
    const auto days = due ? (asOf - *due).count() : 0;
    AddLine(plan.Of(item.posting),
            {.posting = item.posting,
             .entity = item.entity,
             .amount = item.amount,
             .open = item.open,
             .aging = days > 0 ? std::to_string(days) : ""},
            groups);
  }
  report.subtitle = "As of " + LongDate(asOf);
  DetailWriter(plan.columns, report).Write(groups);
}

}  // namespace ostrel::simulator
