#include "simulator/company/Intake.h"

#include <algorithm>
#include <string>

#include "simulator/company/Accounts.h"
#include "simulator/company/Lines.h"
#include "simulator/company/Links.h"
#include "simulator/company/Postings.h"
#include "simulator/company/Totals.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kDeposited = "deposited";  // by which deposit, of a payment

const KindList& Depositable() {
  static const KindList kinds = {FindKind("ReceivePayment"), FindKind("SalesReceipt")};
  return kinds;
}

void Take(Element& line, std::string_view name, const Element* from) {
  if (!from || line.Child(name)) return;
  line.children.emplace_back(*from).name = name;
}

void Rename(Element& line, std::string_view from, std::string_view to) {
  Element* child = line.Child(from);
  if (!child) return;
  if (line.Child(to)) {
    line.Drop(from);
  } else {
    child->name = to;
  }
}

// A line of a deposit that names a payment says what the payment says.
std::optional<Status> TakePayment(Element& line, const Stamp& now, Draft& draft) {
  const std::string id(line.ChildText("PaymentTxnID"));
  const TxnPlace place = FindTxn(draft, Depositable(), id);
  if (!place) return NotFound(id);
  Element& payment = draft.Edit(*place.kind, place.id);
  if (payment.Find(kDeposited)) {
    return InvalidValue(id, "PaymentTxnID", "The payment has been deposited already.");
  }
  payment.SetAttribute(kDeposited, "pending");
  Touch(payment, now);
  line.Drop("PaymentTxnID");
  line.Add("TxnType", place.kind->name);
  line.Add("TxnID", id);
  Rename(line, "OverrideMemo", "Memo");
  Rename(line, "OverrideCheckNumber", "CheckNumber");
  Rename(line, "OverrideClassRef", "ClassRef");
  Take(line, "EntityRef", payment.Child("CustomerRef"));
  Take(line, "AccountRef", payment.Child("DepositToAccountRef"));
  Take(line, "Memo", payment.Child("Memo"));
  const bool isReceipt = place.kind->name == "SalesReceipt";
  Take(line, "CheckNumber", payment.Child(isReceipt ? "CheckNumber" : "RefNumber"));
  Take(line, "PaymentMethodRef", payment.Child("PaymentMethodRef"));
  Take(line, "ClassRef", payment.Child("ClassRef"));
  line.Add("Amount", TotalOf(*place.kind, payment).ToString(2));
  return std::nullopt;
}

std::optional<Status> TakeInDeposit(Element& given, const Stamp& now, Draft& draft) {
  for (Element& line : given.children) {
    if (line.name != "DepositLineAdd" || !line.Child("PaymentTxnID")) continue;
    if (auto status = TakePayment(line, now, draft)) return status;
  }
  return std::nullopt;
}

// "NewQuantity" or "QuantityDifference", and likewise of a value.
Decimal Difference(const Element& adjustment, std::string_view what, Decimal now) {
  const std::string fresh = std::string("New").append(what);
  if (const Element* given = adjustment.Child(fresh)) return Decimal::Of(given->text) - now;
  return Decimal::Of(adjustment.ChildText(std::string(what).append("Difference")));
}

std::optional<Status> TakeInAdjustment(Element& given, Draft& draft) {
  for (Element& line : given.children) {
    if (line.name != "InventoryAdjustmentLineAdd") continue;
    const Target item = ItemOf(line, draft.Before());
    if (!item || !item.kind->Has("QuantityOnHand")) {
      return WrongReference(
          "Item", line.Child("ItemRef") ? line.Child("ItemRef")->ChildText("FullName") : "",
          "InventoryAdjustment line");
    }
    const Element& stock = *item.object;
    const Decimal count = Decimal::Of(stock.ChildText("QuantityOnHand"));
    const Element* value = line.Child("ValueAdjustment");
    const Element* quantity = line.Child("QuantityAdjustment");
    Decimal difference = value      ? Difference(*value, "Quantity", count)
                         : quantity ? Difference(*quantity, "Quantity", count)
                                    : Decimal();
    Decimal worth = (difference * AverageCostOf(stock)).Cents();
    const bool isValued = value && (value->Child("NewValue") || value->Child("ValueDifference"));
    if (isValued) worth = Difference(*value, "Value", (count * AverageCostOf(stock)).Cents());
    line.Add("QuantityDifference", difference.ToString(0));
    line.Add("ValueDifference", worth.ToString(2));
  }
  return std::nullopt;
}

std::optional<Status> TakeInBuild(Element& given, Draft& draft) {
  const Element* reference = given.Child("ItemInventoryAssemblyRef");
  const Target assembly = reference ? FindById(draft.Before(), KindsNamed("ItemInventoryAssembly"),
                                               reference->ChildText("ListID"))
                                    : Target();
  if (!assembly) return CannotSave("BuildAssembly", "The assembly is missing.");
  const Decimal count = Decimal::Of(given.ChildText("QuantityToBuild"));
  bool isShort = false;
  for (const Element& part : assembly.object->children) {
    if (part.name != "ItemInventoryAssemblyLine" || !part.Child("ItemInventoryRef")) continue;
    Element line{.name = "ComponentItemLineRet"};
    Take(line, "ItemRef", part.Child("ItemInventoryRef"));
    const Target item = ItemOf(line, draft.Before());
    if (!item) continue;
    const Decimal needed = Decimal::Of(part.ChildText("Quantity"));
    const Decimal held = Decimal::Of(item.object->ChildText("QuantityOnHand"));
    if (item.object->Child("PurchaseDesc")) {
      line.Add("Desc", item.object->ChildText("PurchaseDesc"));
    }
    line.Add("QuantityOnHand", held.ToString(0));
    line.Add("QuantityNeeded", needed.ToString(0));
    isShort = isShort || (item.kind->Has("QuantityOnHand") && needed * count > held);
    given.children.push_back(std::move(line));
  }
  if (isShort && !IsTrue(given.ChildText("MarkPendingIfRequired"))) {
    return CannotSave("BuildAssembly", "There are not enough components to build so many.");
  }
  given.Add("IsPending", isShort ? "true" : "false");
  return std::nullopt;
}

void WorkOutAdjustment(Element& transaction) {
  const Element* account = transaction.Child("AccountRef");
  for (Element& line : transaction.children) {
    if (line.name != "InventoryAdjustmentLineRet") continue;
    line.SetAttribute("cost", line.ChildText("ValueDifference"));
    if (account) line.SetAttribute("account", account->ChildText("ListID"));
  }
}

void WorkOutBuild(Element& transaction, Draft& draft) {
  const Kind& kind = *FindKind("ItemInventoryAssembly");
  const Element* reference = transaction.Child("ItemInventoryAssemblyRef");
  const Element* assembly = reference ? draft.Find(kind, reference->ChildText("ListID")) : nullptr;
  if (!assembly) return;
  const Decimal count = Decimal::Of(transaction.ChildText("QuantityToBuild"));
  const Element* asset = assembly->Child("AssetAccountRef");
  Decimal sum;
  for (Element& line : transaction.children) {
    if (line.name != "ComponentItemLineRet") continue;
    const Target item = ItemOf(line, draft.Before());
    const Element* now = item ? draft.Find(*item.kind, item.object->ChildText("ListID")) : nullptr;
    if (!now || !item.kind->Has("QuantityOnHand")) continue;
    const Decimal needed = Decimal::Of(line.ChildText("QuantityNeeded")) * count;
    const Decimal cost = (needed * AverageCostOf(*now)).Cents();
    line.SetAttribute("cost", cost.ToString(2));
    if (asset) line.SetAttribute("account", asset->ChildText("ListID"));
    sum += cost;
  }
  transaction.SetAttribute("cost", sum.ToString(2));
  const bool isPending = IsTrue(transaction.ChildText("IsPending"));
  const Decimal held = Decimal::Of(assembly->ChildText("QuantityOnHand"));
  transaction.Set("QuantityCanBuild", count.ToString(0));
  transaction.Set("QuantityOnHand", (isPending ? held : held + count).ToString(0));
  transaction.Set("QuantityOnSalesOrder", assembly->ChildText("QuantityOnSalesOrder"));
}

void WorkOutMileage(Element& transaction) {
  const Element* end = transaction.Child("OdometerEnd");
  if (!end) return;
  const Decimal miles =
      Decimal::Of(end->text) - Decimal::Of(transaction.ChildText("OdometerStart"));
  transaction.Set("TotalMiles", miles.ToString(0));
}

void WorkOutDeposit(const Element& transaction, Draft& draft) {
  for (const Element& line : transaction.children) {
    if (line.name != "DepositLineRet" || !line.Child("TxnID")) continue;
    const TxnPlace place = FindTxn(draft, Depositable(), line.ChildText("TxnID"));
    if (!place) continue;
    draft.Edit(*place.kind, place.id).SetAttribute(kDeposited, transaction.ChildText("TxnID"));
  }
}

}  // namespace

std::optional<Status> TakeIn(const Kind& kind, Element& given, const Stamp& now, Draft& draft) {
  if (kind.name == "Deposit") return TakeInDeposit(given, now, draft);
  if (kind.name == "InventoryAdjustment") return TakeInAdjustment(given, draft);
  if (kind.name == "BuildAssembly") return TakeInBuild(given, draft);
  if (kind.name == "TransferInventory") {
    for (Element& line : given.children) Rename(line, "QuantityToTransfer", "QuantityTransferred");
  }
  return std::nullopt;
}

void WorkOut(const Kind& kind, Element& transaction, Draft& draft) {
  if (kind.name == "Deposit") WorkOutDeposit(transaction, draft);
  if (kind.name == "InventoryAdjustment") WorkOutAdjustment(transaction);
  if (kind.name == "BuildAssembly") WorkOutBuild(transaction, draft);
  if (kind.name == "VehicleMileage") WorkOutMileage(transaction);
}

void GiveBack(const Kind& kind, const Element& transaction, const Stamp& now, Draft& draft) {
  if (kind.name != "Deposit") return;
  for (const Element& line : transaction.children) {
    if (line.name != "DepositLineRet" || !line.Child("TxnID")) continue;
    const TxnPlace place = FindTxn(draft, Depositable(), line.ChildText("TxnID"));
    if (!place) continue;
    Element& payment = draft.Edit(*place.kind, place.id);
    std::erase_if(payment.attributes,
                  [](const Attribute& attribute) { return attribute.name == kDeposited; });
    Touch(payment, now);
  }
}

}  // namespace ostrel::simulator
