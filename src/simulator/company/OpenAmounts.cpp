// Applications take the same amount from what pays and from what is paid, so the sum of the open
// amounts is that of the postings. An application counts from the day of the later of the two.
#include "simulator/company/OpenAmounts.h"

#include <algorithm>
#include <map>

#include "simulator/company/Payments.h"
#include "simulator/values/LongWork.h"

namespace ostrel::simulator {
namespace {

using Places = std::map<std::string, std::size_t, std::less<>>;  // in the items, by TxnID

class OpenItems {
 public:
  OpenItems(const Company& company, std::string_view accountType, const std::string& end)
      : oCompany(company), sType(accountType), iSide(accountType == "AccountsPayable" ? -1 : 1) {
    ForEachPosted(company, {}, [&](const LedgerPosting& posting) { Take(posting, end); });
    AddUnexplained();
    for (const Kind* kind : AllKinds()) {
      if (kind->category == Category::kTransaction) ApplyAll(*kind, end);
    }
  }

  std::vector<OpenItem> TakeItems() { return std::move(oItems); }

 private:
  void Take(const LedgerPosting& posting, const std::string& end) {
    if (posting.account->ChildText("AccountType") != sType) return;
    const Decimal amount = iSide < 0 ? posting.amount.Negated() : posting.amount;
    const Target entity = EntityOf(posting, oCompany);
    oExplained[entity.object] += amount;
    if (posting.date > end) return;
    const std::string id(posting.source->ChildText("TxnID"));
    const auto known = posting.line ? oPlaces.end() : oPlaces.find(id);
    if (known != oPlaces.end()) {
      oItems[known->second].amount += amount;
      oItems[known->second].open += amount;
      return;
    }
    if (!posting.line && !id.empty()) oPlaces.emplace(id, oItems.size());
    const std::string_view due = posting.source->ChildText("DueDate");
    oItems.push_back(
        {posting, entity, std::string(due.empty() ? posting.date : due), amount, amount});
  }

  // What was written into the company file as balance and no posting explains has no date.
  void AddUnexplained() {
    const Kind& kind = *FindKind(iSide < 0 ? "Vendor" : "Customer");
    for (const auto& [key, object] : oCompany.List(kind).InOrder()) {
      BreatheLightly();
      const Decimal rest = Decimal::Of(object.ChildText("Balance")) - oExplained[&object];
      const Target entity = {&kind, &object};
      if (!rest.IsZero()) oItems.push_back({{&kind, &object}, entity, "", rest, rest});
    }
  }

  void ApplyAll(const Kind& kind, const std::string& end) {
    for (const auto& [key, object] : oCompany.List(kind).InOrder()) {
      BreatheLightly();
      if (object.ChildText(kind.dateField) > end) break;
      const std::string id(object.ChildText("TxnID"));
      if (!oPlaces.contains(id)) continue;
      if (kind.pays == "OpenSale" || kind.pays == "Bill") ApplyPayment(object, id);
      if (kind.name == "CreditMemo" || kind.name == "VendorCredit") ApplyCredit(object, id);
    }
  }

  void ApplyPayment(const Element& payment, const std::string& id) {
    for (const Application& application : ApplicationsOf(payment)) {
      Apply(id, application.txnId, application.amount + application.discount);
    }
  }

  void ApplyCredit(const Element& credit, const std::string& id) {
    for (const Element& child : credit.children) {
      if (child.name != "LinkedTxn" || child.ChildText("LinkType") != "AMTTYPE") continue;
      Apply(id, child.ChildText("TxnID"), Decimal::Of(child.ChildText("Amount")).Negated());
    }
  }

  void Apply(const std::string& by, std::string_view to, Decimal amount) {
    const auto payer = oPlaces.find(by);
    const auto paid = oPlaces.find(to);
    if (payer == oPlaces.end() || paid == oPlaces.end()) return;
    oItems[payer->second].open += amount;
    oItems[paid->second].open += amount.Negated();
  }

  const Company& oCompany;
  std::string_view sType;
  int iSide;
  std::vector<OpenItem> oItems = {};
  Places oPlaces = {};
  std::map<const Element*, Decimal> oExplained = {};  // of the entities
};

}  // namespace

std::vector<OpenItem> OpenItemsOf(const Company& company, std::string_view accountType,
                                  const std::string& end,
                                  const std::function<bool(const LedgerPosting&)>& passes) {
  std::vector<OpenItem> items = OpenItems(company, accountType, end).TakeItems();
  std::erase_if(items, [&](const OpenItem& item) { return !passes(item.posting); });
  std::ranges::stable_sort(items, {}, [](const OpenItem& item) { return item.posting.date; });
  return items;
}

}  // namespace ostrel::simulator
