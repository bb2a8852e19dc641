// A line keeps the order's line that it carries out in its attributes "linkTxn" and "linkLine".
#include "simulator/company/Orders.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "simulator/company/Lines.h"
#include "simulator/company/Links.h"
#include "simulator/company/Postings.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kLinkTxn = "linkTxn";
constexpr std::string_view kLinkLine = "linkLine";

// Which kinds carry out which, and how the lines of both are called.
struct Carrier {
  std::string_view kind;
  std::string_view orders;  // kinds
  std::string_view line;    // in a Ret
};
constexpr Carrier kCarriers[] = {
    {"Invoice", "SalesOrderOrEstimate", "InvoiceLineRet"},
    {"Bill", "OrderOrReceipt", "ItemLineRet"},
    {"ItemReceipt", "PurchaseOrder", "ItemLineRet"},
    {"Check", "PurchaseOrder", "ItemLineRet"},
    {"CreditCardCharge", "PurchaseOrder", "ItemLineRet"},
};

struct Order {
  std::string_view kind;
  std::string_view line;
  std::string_view done;    // the field of a line that counts; empty: nothing does
  std::string_view closed;  // the field of the order that says that nothing is left
};
constexpr Order kOrders[] = {
    {"SalesOrder", "SalesOrderLineRet", "Invoiced", "IsFullyInvoiced"},
    {"Estimate", "EstimateLineRet", "", ""},
    {"PurchaseOrder", "PurchaseOrderLineRet", "ReceivedQuantity", "IsFullyReceived"},
    {"ItemReceipt", "ItemLineRet", "", ""},
};

const Carrier* CarrierOf(const Kind& kind) {
  const auto found = std::ranges::find(kCarriers, kind.name, &Carrier::kind);
  return found == std::end(kCarriers) ? nullptr : &*found;
}

const Order& OrderOf(const Kind& kind) {
  return *std::ranges::find(kOrders, kind.name, &Order::kind);
}

Decimal LeftOf(const Order& order, const Element& line) {
  const Decimal done = order.done.empty() ? Decimal() : Decimal::Of(line.ChildText(order.done));
  return Decimal::Of(line.ChildText("Quantity")) - done;
}

bool IsOpen(const Order& order, const Element& line) {
  if (IsTrue(line.ChildText("IsManuallyClosed"))) return false;
  return !line.Child("Quantity") || order.done.empty() || LeftOf(order, line) > Decimal();
}

// What a line takes over, under the name that it has for it.
constexpr std::pair<std::string_view, std::string_view> kTaken[] = {
    {"ItemRef", "ItemRef"},
    {"Desc", "Desc"},
    {"UnitOfMeasure", "UnitOfMeasure"},
    {"Rate", "Rate"},
    {"Rate", "Cost"},
    {"Cost", "Cost"},
    {"RatePercent", "RatePercent"},
    {"ClassRef", "ClassRef"},
    {"CustomerRef", "CustomerRef"},
    {"SalesTaxCodeRef", "SalesTaxCodeRef"},
    {"Other1", "Other1"},
    {"Other2", "Other2"},
};

void Fill(Element& line, const Element& from, const Order& order, std::span<const Field> fields) {
  for (const auto& [source, name] : kTaken) {
    const Element* held = from.Child(source);
    const bool isPriced = name == "Rate" || name == "RatePercent" || name == "Cost";
    const bool isWanted = FindField(fields, name, Use::kRet) && !line.Child(name);
    if (!held || !isWanted || (isPriced && line.Child("Amount"))) continue;
    line.children.emplace_back(*held).name = name;
  }
  if (from.Child("Quantity") && !line.Child("Quantity")) {
    line.Add("Quantity", LeftOf(order, from).ToString(0));
  }
  if (!from.Child("Rate") && !from.Child("Cost") && from.Child("Amount") && !line.Child("Amount")) {
    line.Add("Amount", from.ChildText("Amount"));
  }
}

void Mark(Element& line, const Element& order, const Element& orderLine) {
  line.SetAttribute(kLinkTxn, order.ChildText("TxnID"));
  line.SetAttribute(kLinkLine, orderLine.ChildText("TxnLineID"));
}

// A receipt of goods becomes the bill: it is no more, and the bill goes on with its orders.
void Absorb(const Kind& kind, const Element& receipt, const Stamp& now, Draft& draft) {
  Reverse(kind, receipt, draft);
  TakeBackOrders(kind, receipt, now, draft);
  draft.Remove(kind, receipt.ChildText("TxnID"));
}

class Taker {
 public:
  Taker(const Kind& kind, const Carrier& carrier, Element& given, const Stamp& now, Draft& draft)
      : oCarrier(carrier),
        oField(*FindField(kind.fields, carrier.line, Use::kRet)),
        oGiven(given),
        oNow(now),
        oDraft(draft) {}

  std::optional<Status> TakeWhole(std::string_view txnId) {
    const TxnPlace place = FindTxn(oDraft, KindsNamed(oCarrier.orders), txnId);
    if (!place) return NotFound(txnId);
    const Element source = *oDraft.Find(*place.kind, place.id);
    const Order& order = OrderOf(*place.kind);
    if (source.Child("ExpenseLineRet")) TakeExpenses(source);
    ForEachLine(source, order.line, [&](const Element& from) {
      if (!IsOpen(order, from)) return;
      Element& line = oGiven.children.emplace_back(Element{.name = std::string(oField.inAdd)});
      Fill(line, from, order, oField.children);
      if (place.kind->name == "ItemReceipt") {
        line.attributes = from.attributes;
      } else {
        Mark(line, source, from);
      }
    });
    if (place.kind->name == "ItemReceipt") Absorb(*place.kind, source, oNow, oDraft);
    return std::nullopt;
  }

  std::optional<Status> TakeLine(Element& line) {
    const Element* link = line.Child("LinkToTxn");
    if (!link) return std::nullopt;
    const std::string txnId(link->ChildText("TxnID"));
    const std::string lineId(link->ChildText("TxnLineID"));
    const TxnPlace place = FindTxn(oDraft, KindsNamed(oCarrier.orders), txnId);
    if (!place) return NotFound(txnId);
    const Element& source = *oDraft.Find(*place.kind, place.id);
    const Order& order = OrderOf(*place.kind);
    bool isFound = false;
    ForEachLine(source, order.line, [&](const Element& from) {
      if (isFound || from.ChildText("TxnLineID") != lineId) return;
      isFound = true;
      line.Drop("LinkToTxn");
      Fill(line, from, order, oField.children);
      Mark(line, source, from);
    });
    return isFound ? std::nullopt : std::optional(NotFound(lineId));
  }

  std::string_view LineName() const { return oField.inAdd; }

 private:
  void TakeExpenses(const Element& source) {
    for (const Element& child : source.children) {
      if (child.name != "ExpenseLineRet") continue;
      Element& line = oGiven.children.emplace_back(child);
      line.name = "ExpenseLineAdd";
      line.Drop("TxnLineID");
    }
  }

  const Carrier& oCarrier;
  const Field& oField;
  Element& oGiven;
  const Stamp& oNow;
  Draft& oDraft;
};

struct Carried {
  std::string lineId;
  Decimal quantity;
  Decimal amount;
};
using CarriedByOrder = std::map<std::string, std::vector<Carried>>;  // by TxnID

CarriedByOrder CarriedBy(const Carrier& carrier, const Element& transaction) {
  CarriedByOrder carried;
  ForEachLine(transaction, carrier.line, [&](const Element& line) {
    const std::string* txnId = line.Find(kLinkTxn);
    const std::string* lineId = line.Find(kLinkLine);
    if (!txnId || !lineId) return;
    carried[*txnId].push_back(
        {*lineId, Decimal::Of(line.ChildText("Quantity")), Decimal::Of(line.ChildText("Amount"))});
  });
  return carried;
}

void CountLine(const Order& order, Element& line, Decimal quantity) {
  const Decimal done = Decimal::Of(line.ChildText(order.done)) + quantity;
  line.Set(order.done, done.ToString(0));
  if (!line.Child("UnbilledQuantity")) return;
  line.Set("IsBilled", LeftOf(order, line) <= Decimal() ? "true" : "false");
}

// Counts what is carried out (or, with -1, no longer is) in the order, and says when it is closed.
void Count(const TxnPlace& place, const std::vector<Carried>& carried, int direction,
           const Stamp& now, Draft& draft) {
  const Order& order = OrderOf(*place.kind);
  Element& transaction = draft.Edit(*place.kind, place.id);
  Touch(transaction, now);
  if (order.done.empty()) return;
  Reverse(*place.kind, transaction, draft);
  bool isLeft = false;
  std::map<std::string_view, Decimal> sums;
  for (const Carried& one : carried) {
    sums[one.lineId] += direction > 0 ? one.quantity : one.quantity.Negated();
  }
  ForEachLine(transaction, order.line, [&](Element& line) {
    const auto found = sums.find(line.ChildText("TxnLineID"));
    if (found != sums.end()) CountLine(order, line, found->second);
    isLeft = isLeft || (line.Child("Quantity") && IsOpen(order, line));
  });
  transaction.Set(order.closed, isLeft ? "false" : "true");
  Post(*place.kind, transaction, draft);
}

}  // namespace

std::optional<Status> TakeOver(const Kind& kind, Element& given, const Stamp& now, Draft& draft) {
  const Carrier* carrier = CarrierOf(kind);
  if (!carrier) return std::nullopt;
  Taker taker(kind, *carrier, given, now, draft);
  for (Element& child : given.children) {
    if (child.name != taker.LineName()) continue;
    if (auto status = taker.TakeLine(child)) return status;
  }
  std::vector<std::string> ids;
  for (const Element& child : given.children) {
    if (child.name == "LinkToTxnID") ids.push_back(child.text);
  }
  for (const std::string& id : ids) {
    if (auto status = taker.TakeWhole(id)) return status;
  }
  return std::nullopt;
}

void CarryOut(const Kind& kind, Element& transaction, const Stamp& now, Draft& draft) {
  const Carrier* carrier = CarrierOf(kind);
  if (!carrier) return;
  for (const auto& [txnId, carried] : CarriedBy(*carrier, transaction)) {
    const TxnPlace place = FindTxn(draft, KindsNamed(carrier->orders), txnId);
    if (!place) continue;
    Count(place, carried, 1, now, draft);
    Decimal amount;
    for (const Carried& one : carried) amount += one.amount;
    Element& order = draft.Edit(*place.kind, place.id);
    AddLink(*place.kind, order, kind, transaction, "QUANTYPE", amount);
    AddLink(kind, transaction, *place.kind, order, "QUANTYPE", amount);
  }
}

void DropOrderLinks(const Kind& kind, Element& transaction) {
  if (!CarrierOf(kind)) return;
  std::erase_if(transaction.children, [](const Element& child) {
    return child.name == "LinkedTxn" && child.ChildText("LinkType") == "QUANTYPE";
  });
}

void TakeBackOrders(const Kind& kind, const Element& transaction, const Stamp& now, Draft& draft) {
  const Carrier* carrier = CarrierOf(kind);
  if (!carrier) return;
  for (const auto& [txnId, carried] : CarriedBy(*carrier, transaction)) {
    const TxnPlace place = FindTxn(draft, KindsNamed(carrier->orders), txnId);
    if (!place) continue;
    Count(place, carried, -1, now, draft);
    DropLinks(draft.Edit(*place.kind, place.id), transaction.ChildText("TxnID"));
  }
}

}  // namespace ostrel::simulator
