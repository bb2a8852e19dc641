// The profit and loss, the balance sheet and the trial balance. A statement is a table of steps: a
// step opens a section, lists the accounts of a type, or closes a section with its sum. Sections
// without accounts are left out.
//
// Accounts of the balance sheet go on from year to year. Those of the profit and loss begin anew
// with each fiscal year; what the years before have earned stands in Retained Earnings.
//
// A balance that was written into the company file by hand, and that no transaction explains,
// counts from the beginning.
#include <algorithm>
#include <map>
#include <span>

#include "simulator/messages/ReportGroups.h"
#include "simulator/messages/Reports.h"
#include "simulator/values/LongWork.h"
#include "simulator/values/Periods.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kRetainedEarnings = "Retained Earnings";

const Kind& Accounts() {
  static const Kind& kind = *FindKind("Account");
  return kind;
}

using Cells = std::map<std::string, Decimal>;  // by the keys of columns, in debits

// The accounts of a statement in its order, with their sums.
struct AccountRow {
  const Element* account = nullptr;
  Cells cells = {};
};
using AccountRows = std::map<std::string, AccountRow>;  // by AccountKey
using ColumnTitles = std::map<std::string, std::string>;

enum class Form {
  kOpen,      // a section
  kAccounts,  // of a type
  kSum,       // of the section so far
  kClose,     // a section, with its sum
  kTotal,     // the same, as the last line of all
  kEarnings,  // of earlier years and of this one
};

struct Step {
  Form form;
  std::string_view text;  // a label or an account type
  int side = 1;           // 1: debits are shown above zero, -1: credits
};

constexpr Step kProfitAndLoss[] = {
    {Form::kOpen, ""},
    {Form::kOpen, "Ordinary Income/Expense"},
    {Form::kOpen, "Income"},
    {Form::kAccounts, "Income", -1},
    {Form::kClose, "Total Income", -1},
    {Form::kOpen, "Cost of Goods Sold"},
    {Form::kAccounts, "CostOfGoodsSold"},
    {Form::kClose, "Total COGS"},
    {Form::kSum, "Gross Profit", -1},
    {Form::kOpen, "Expense"},
    {Form::kAccounts, "Expense"},
    {Form::kClose, "Total Expense"},
    {Form::kClose, "Net Ordinary Income", -1},
    {Form::kOpen, "Other Income/Expense"},
    {Form::kOpen, "Other Income"},
    {Form::kAccounts, "OtherIncome", -1},
    {Form::kClose, "Total Other Income", -1},
    {Form::kOpen, "Other Expense"},
    {Form::kAccounts, "OtherExpense"},
    {Form::kClose, "Total Other Expense"},
    {Form::kClose, "Net Other Income", -1},
    {Form::kTotal, "Net Income", -1},
};

constexpr Step kBalanceSheet[] = {
    {Form::kOpen, "ASSETS"},
    {Form::kOpen, "Current Assets"},
    {Form::kOpen, "Checking/Savings"},
    {Form::kAccounts, "Bank"},
    {Form::kClose, "Total Checking/Savings"},
    {Form::kOpen, "Accounts Receivable"},
    {Form::kAccounts, "AccountsReceivable"},
    {Form::kClose, "Total Accounts Receivable"},
    {Form::kOpen, "Other Current Assets"},
    {Form::kAccounts, "OtherCurrentAsset"},
    {Form::kClose, "Total Other Current Assets"},
    {Form::kClose, "Total Current Assets"},
    {Form::kOpen, "Fixed Assets"},
    {Form::kAccounts, "FixedAsset"},
    {Form::kClose, "Total Fixed Assets"},
    {Form::kOpen, "Other Assets"},
    {Form::kAccounts, "OtherAsset"},
    {Form::kClose, "Total Other Assets"},
    {Form::kTotal, "TOTAL ASSETS"},
    {Form::kOpen, "LIABILITIES & EQUITY"},
    {Form::kOpen, "Liabilities"},
    {Form::kOpen, "Current Liabilities"},
    {Form::kOpen, "Accounts Payable"},
    {Form::kAccounts, "AccountsPayable", -1},
    {Form::kClose, "Total Accounts Payable", -1},
    {Form::kOpen, "Credit Cards"},
    {Form::kAccounts, "CreditCard", -1},
    {Form::kClose, "Total Credit Cards", -1},
    {Form::kOpen, "Other Current Liabilities"},
    {Form::kAccounts, "OtherCurrentLiability", -1},
    {Form::kClose, "Total Other Current Liabilities", -1},
    {Form::kClose, "Total Current Liabilities", -1},
    {Form::kOpen, "Long Term Liabilities"},
    {Form::kAccounts, "LongTermLiability", -1},
    {Form::kClose, "Total Long Term Liabilities", -1},
    {Form::kClose, "Total Liabilities", -1},
    {Form::kOpen, "Equity"},
    {Form::kAccounts, "Equity", -1},
    {Form::kEarnings, "", -1},
    {Form::kClose, "Total Equity", -1},
    {Form::kTotal, "TOTAL LIABILITIES & EQUITY", -1},
};

void AddTo(Cells& cells, const Cells& others) {
  for (const auto& [key, amount] : others) cells[key] += amount;
}

bool AreZero(const Cells& cells) {
  return std::ranges::all_of(cells, [](const auto& cell) { return cell.second.IsZero(); });
}

Decimal Sided(Decimal amount, int side) { return side < 0 ? amount.Negated() : amount; }

// Carries out the steps of a statement.
class StatementWriter {
 public:
  StatementWriter(const AccountRows& sums, const ColumnTitles& columns, bool withTotal,
                  Report& report)
      : oSums(sums), oColumns(columns), bTotal(withTotal), oReport(report) {}

  Cells oRetained = {};  // what the earnings are, in debits
  Cells oNetIncome = {};

  void Write(std::span<const Step> steps) {
    for (const Step& step : steps) {
      switch (step.form) {
        case Form::kOpen:
          Open(step.text);
          break;
        case Form::kAccounts:
          List(step);
          break;
        case Form::kEarnings:
          if (!AreZero(oRetained)) AddRow(kRetainedEarnings, {}, oRetained, step.side);
          if (!AreZero(oNetIncome)) AddRow("Net Income", {}, oNetIncome, step.side);
          break;
        case Form::kSum:
          Sum(step, RowForm::kSubtotal);
          break;
        case Form::kClose:
          Close(step, RowForm::kSubtotal);
          break;
        case Form::kTotal:
          Close(step, RowForm::kTotal);
          break;
      }
    }
  }

 private:
  struct Section {
    std::size_t rows;  // of the report, before it
    bool isEmpty = true;
    Cells sum = {};
  };

  void Open(std::string_view label) {
    oSections.push_back({oReport.rows.size()});
    if (!label.empty()) oReport.AddText(std::string(label));
  }

  std::vector<std::string> CellsOf(std::string_view label, const Cells& cells, int side) const {
    std::vector<std::string> texts = {std::string(label)};
    Decimal total;
    for (const auto& [key, title] : oColumns) {
      const auto cell = cells.find(key);
      const Decimal amount = cell == cells.end() ? Decimal() : cell->second;
      total += amount;
      texts.push_back(AmountText(Sided(amount, side)));
    }
    if (bTotal) texts.push_back(AmountText(Sided(total, side)));
    return texts;
  }

  void AddRow(std::string_view label, std::string_view about, const Cells& cells, int side) {
    oReport.rows.push_back(
        {RowForm::kData, CellsOf(label, cells, side), about, std::string(label)});
    AddTo(oSections.back().sum, cells);
    oSections.back().isEmpty = false;
  }

  void List(const Step& step) {
    for (const auto& [key, sums] : oSums) {
      if (sums.account->ChildText("AccountType") != step.text) continue;
      AddRow(FullNameOf(Accounts(), *sums.account), "account", sums.cells, step.side);
    }
  }

  void Sum(const Step& step, RowForm form) {
    const Cells& sum = oSections.back().sum;
    oReport.rows.push_back({form, CellsOf(step.text, sum, step.side)});
  }

  void Close(const Step& step, RowForm form) {
    if (form == RowForm::kTotal || !oSections.back().isEmpty) {
      Sum(step, form);
    } else {
      oReport.rows.resize(oSections.back().rows, {RowForm::kText});
    }
    const Section closed = std::move(oSections.back());
    oSections.pop_back();
    if (oSections.empty() || closed.isEmpty) return;
    oSections.back().isEmpty = false;
    AddTo(oSections.back().sum, closed.sum);
  }

  const AccountRows& oSums;
  const ColumnTitles& oColumns;
  bool bTotal;
  Report& oReport;
  std::vector<Section> oSections = {};
};

void AddColumns(const ColumnTitles& columns, bool withTotal, Report& report) {
  report.columns.push_back({"", "Blank", "STRTYPE"});
  for (const auto& [key, title] : columns) report.columns.push_back({title});
  if (withTotal) report.columns.push_back({"TOTAL", "Total"});
}

// Leaves out the accounts that are not asked for, or adds those without postings.
void ChooseAccounts(const ReportOrder& order, bool ofProfitAndLoss, AccountRows& sums) {
  const std::string_view rows = order.Choice("ReturnRows", "ActiveOnly");
  if (rows == "NonZero") std::erase_if(sums, [](const auto& s) { return AreZero(s.second.cells); });
  if (rows != "All") return;
  for (const auto& [key, account] : order.company.List(Accounts()).InOrder()) {
    if (IsOfProfitAndLoss(account) == ofProfitAndLoss) sums[AccountKey(account)].account = &account;
  }
}

std::string_view ColumnsWord(const ReportOrder& order) {
  if (order.type == "ProfitAndLossByClass") return "Class";
  if (order.type == "ProfitAndLossByJob") return "Customer";
  return order.Choice("SummarizeColumnsBy", "TotalOnly");
}

void Refuse(std::string_view value, std::string_view field, Report& report) {
  report.status = NotInReports(value, field);
}

/// The balances of all accounts at the ends of periods.
struct Balances {
  AccountRows sums = {};
  Cells retained = {};
  Cells netIncome = {};
};

// AccountRows up what was posted until each of these days.
class BalanceReckoner {
 public:
  BalanceReckoner(const ReportOrder& order, const std::vector<std::string>& ends)
      : oOrder(order), oEnds(ends) {
    ForEachInScope(order.scope, {}, order.company,
                   [&](const LedgerPosting& posting) { Take(posting); });
    if (order.scope.filters.empty()) AddUnexplained();
    for (auto& [key, sums] : oBalances.sums) CarryOn(sums.cells);
    for (const std::string& end : oEnds) SumEarnings(end);
  }

  Balances& Result() { return oBalances; }

 private:
  static std::string YearOf(std::string_view date) { return std::string(date.substr(0, 4)); }

  void Take(const LedgerPosting& posting) {
    if (IsOfProfitAndLoss(*posting.account)) {
      oEarnings[std::string(posting.date)] += posting.amount;
      return;
    }
    oExplained[posting.account] += posting.amount;
    const auto end = std::ranges::lower_bound(oEnds, posting.date);
    if (end == oEnds.end()) return;
    SumsOf(*posting.account).cells[*end] += posting.amount;
  }

  AccountRow& SumsOf(const Element& account) {
    AccountRow& sums = oBalances.sums[AccountKey(account)];
    sums.account = &account;
    return sums;
  }

  void AddUnexplained() {
    for (const auto& [key, account] : oOrder.company.List(Accounts()).InOrder()) {
      if (IsOfProfitAndLoss(account)) continue;
      const Decimal rest = DebitBalanceOf(Accounts(), account) - oExplained[&account];
      if (!rest.IsZero()) SumsOf(account).cells[oEnds.front()] += rest;
    }
  }

  void CarryOn(Cells& cells) const {
    Decimal before;
    for (const std::string& end : oEnds) before = cells[end] += before;
  }

  void SumEarnings(const std::string& end) {
    for (const auto& [date, amount] : oEarnings) {
      if (date > end) break;
      const bool isOfYear = YearOf(date) == YearOf(end);
      (isOfYear ? oBalances.netIncome : oBalances.retained)[end] += amount;
    }
  }

  const ReportOrder& oOrder;
  const std::vector<std::string>& oEnds;  // of the periods, in order
  std::map<const Element*, Decimal> oExplained = {};
  std::map<std::string, Decimal> oEarnings = {};  // by date
  Balances oBalances = {};
};

// Where the company has an account for it, the earnings of earlier years are in its balance.
void MoveRetained(const Company& company, Balances& balances) {
  const Element* account = company.List(Accounts()).FindByName(kRetainedEarnings);
  if (!account || account->ChildText("AccountType") != "Equity") return;
  if (AreZero(balances.retained)) return;
  AccountRow& sums = balances.sums[AccountKey(*account)];
  sums.account = account;
  AddTo(sums.cells, std::exchange(balances.retained, {}));
}

// The last days of the columns, with their titles.
bool SetEnds(const ReportOrder& order, ColumnTitles& ends) {
  const std::string_view word = order.Choice("SummarizeColumnsBy", "TotalOnly");
  const ReportScope& scope = order.scope;
  ends.emplace(DateText(scope.end), ShortDate(scope.end));
  if (word == "TotalOnly") return true;
  if (!IsCalendarPart(word) || !scope.range.from) return false;
  for (auto day = *scope.range.from; day < scope.end;) {
    const auto end = std::min(*PartOf(word, day).to, scope.end);
    ends.emplace(DateText(end), ShortDate(end));
    if (ends.size() > kMostReportColumns) return false;
    day = end + std::chrono::days(1);
  }
  return true;
}

std::vector<std::string> KeysOf(const ColumnTitles& columns) {
  std::vector<std::string> keys;
  for (const auto& [key, title] : columns) keys.push_back(key);
  return keys;
}

void AddTrialRow(std::string_view label, std::string_view about, Decimal amount, Report& report,
                 Decimal& debits, Decimal& credits) {
  const bool isCredit = amount < Decimal();
  (isCredit ? credits : debits) += isCredit ? amount.Negated() : amount;
  report.rows.push_back({RowForm::kData,
                         {std::string(label), isCredit ? "" : AmountText(amount),
                          isCredit ? AmountText(amount.Negated()) : ""},
                         about,
                         std::string(label)});
}

}  // namespace

void MakeProfitAndLoss(const ReportOrder& order, Report& report) {
  const std::string_view word = ColumnsWord(order);
  const ReportGrouping grouping(word, order.scope, order.company);
  if (!grouping.IsKnown()) return Refuse(word, "SummarizeColumnsBy", report);
  ColumnTitles columns;
  if (grouping.IsTotal() || WantsAllColumns(order)) columns = grouping.Expected();
  AccountRows sums;
  ForEachInScope(order.scope, order.scope.period, order.company, [&](const LedgerPosting& posting) {
    if (!IsOfProfitAndLoss(*posting.account)) return;
    const ReportGroup column = grouping.Of(posting);
    AccountRow& row = sums[AccountKey(*posting.account)];
    row.account = posting.account;
    row.cells[column.key] += posting.amount;
    if (columns.size() <= kMostReportColumns) {
      columns.emplace(column.key, column.title);
    }
  });
  if (columns.size() > kMostReportColumns) return Refuse(word, "SummarizeColumnsBy", report);
  ChooseAccounts(order, true, sums);
  const bool withTotal = word != "TotalOnly";
  AddColumns(columns, withTotal, report);
  StatementWriter(sums, columns, withTotal, report).Write(kProfitAndLoss);
}

void MakeBalanceSheet(const ReportOrder& order, Report& report) {
  ColumnTitles columns;
  if (!SetEnds(order, columns)) {
    return Refuse(order.Choice("SummarizeColumnsBy", ""), "SummarizeColumnsBy", report);
  }
  const std::vector<std::string> ends = KeysOf(columns);
  Balances balances = std::move(BalanceReckoner(order, ends).Result());
  MoveRetained(order.company, balances);
  ChooseAccounts(order, false, balances.sums);
  report.subtitle = "As of " + LongDate(order.scope.end);
  AddColumns(columns, false, report);
  StatementWriter writer(balances.sums, columns, false, report);
  writer.oRetained = std::move(balances.retained);
  writer.oNetIncome = std::move(balances.netIncome);
  writer.Write(kBalanceSheet);
}

// The accounts of the profit and loss stand with what they have had since the fiscal year began.
void MakeTrialBalance(const ReportOrder& order, Report& report) {
  const std::string end = DateText(order.scope.end);
  const std::vector<std::string> ends = {end};
  Balances balances = std::move(BalanceReckoner(order, ends).Result());
  MoveRetained(order.company, balances);
  const LedgerPeriod year = {.from = end.substr(0, 4) + "-01-01", .to = end};
  ForEachInScope(order.scope, year, order.company, [&](const LedgerPosting& posting) {
    if (!IsOfProfitAndLoss(*posting.account)) return;
    AccountRow& sums = balances.sums[AccountKey(*posting.account)];
    sums.account = posting.account;
    sums.cells[end] += posting.amount;
  });
  ChooseAccounts(order, false, balances.sums);
  ChooseAccounts(order, true, balances.sums);
  report.subtitle = "As of " + LongDate(order.scope.end);
  report.columns = {{"", "Blank", "STRTYPE"}, {"Debit", "Debit"}, {"Credit", "Credit"}};
  Decimal debits, credits;
  for (auto& [key, sums] : balances.sums) {
    AddTrialRow(FullNameOf(Accounts(), *sums.account), "account", sums.cells[end], report, debits,
                credits);
  }
  const Decimal retained = balances.retained[end];
  if (!retained.IsZero()) AddTrialRow(kRetainedEarnings, {}, retained, report, debits, credits);
  report.rows.push_back({RowForm::kTotal, {"TOTAL", AmountText(debits), AmountText(credits)}});
}

}  // namespace ostrel::simulator
