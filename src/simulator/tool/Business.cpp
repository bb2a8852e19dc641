// The business is played day by day: customers buy, invoices fall due, payments come in, shelves
// are filled again, and rent and power are paid every month. Everything goes through the messages
// of the engine, as a client would send them, so that totals, balances and IDs are the engine's
// own. One generator of random numbers, begun with the seed, decides everything in a fixed order;
// any change of that order changes all companies that are made from then on.
#include "simulator/tool/Business.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <vector>

#include "simulator/tool/Bookkeeper.h"
#include "simulator/tool/FixedLists.h"
#include "simulator/tool/People.h"
#include "simulator/tool/WordLists.h"
#include "simulator/values/Dates.h"
#include "simulator/values/Decimal.h"

namespace ostrel::simulator {
namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr sys_days kFirstDay = std::chrono::year{2008} / 1 / 2;
constexpr int kYear = 360;
constexpr int kOpens = 8 * 60;  // minute of the day
constexpr int kCloses = 18 * 60;

enum class Sort { kRetail, kContractor, kWholesale };

struct Terms {
  std::string_view type, terms, creditLimit;
};
constexpr Terms kTermsOf[] = {{"Retail", "Due on receipt", ""},
                              {"Contractor", "Net 30", "5000.00"},
                              {"Wholesale", "2% 10 Net 30", "20000.00"}};

constexpr std::string_view kRepInitials[] = {"RT", "BA", "JP"};
constexpr std::string_view kMethods[] = {"Check", "Check", "Visa", "Cash"};

class Business {
 public:
  explicit Business(const BusinessSize& size)
      : oSize(size), oChance(size.seed), oPeople(oChance), oBooks(EmptyBusiness()) {}

  std::string Make() {
    oBooks.SetTime(kFirstDay, kOpens);
    AddFixedLists(oBooks, oPeople, kFirstDay);
    for (std::size_t i = 0; i < oSize.vendors; ++i) AddVendor(i);
    for (std::size_t i = 0; i < oSize.items; ++i) AddItem(i);
    for (std::size_t i = 0; i < oSize.customers; ++i) AddCustomer(i);
    for (std::size_t i = 0; i < oSize.invoices; ++i) {
      const auto day = static_cast<int>(i * kYear / oSize.invoices);
      ReachDay(day);
      Sell(day);
    }
    if (oSize.invoices > 0) ReachDay(kYear);
    return oBooks.Books().ToBytes();
  }

 private:
  struct Ware {
    std::string name;
    int onHand = 0;  // where it is counted
    bool counted = false;
  };
  struct Buyer {
    std::string fullName;
    Sort sort;
  };
  struct Debt {
    std::string buyer, invoice, amount;
  };

  // A moment of the day's business, later than the one before.
  void SetTime(int day) {
    iMinute = day == iDay ? std::min(iMinute + oChance.Between(1, 20), kCloses) : kOpens;
    iDay = day;
    oBooks.SetTime(kFirstDay + days(day), iMinute);
  }
  static std::string Date(int day) { return DateText(kFirstDay + days(day)); }

  // List objects are added over the first weeks.
  void SetListTime(std::size_t index, std::size_t count) {
    SetTime(static_cast<int>(index * 20 / std::max<std::size_t>(count, 1)));
  }

  void AddVendor(std::size_t index) {
    SetListTime(index, oSize.vendors);
    const bool goods = oChance.InHundred(80);
    const std::string name = oPeople.Unique(oPeople.NewFirm(words::Wares()));
    const People::Person contact = oPeople.NewPerson();
    Element fields;
    fields.Add("Name", name);
    fields.Add("CompanyName", name);
    fields.Add("FirstName", contact.first);
    fields.Add("LastName", contact.last);
    fields.children.push_back(oPeople.NewAddress("VendorAddress", name));
    fields.Add("Phone", oPeople.NewPhone());
    fields.Add("Email", People::MailOf("orders", name));
    fields.Add("Contact", contact.Whole());
    fields.Add("AccountNumber", "TW-" + std::to_string(1000 + index * 7));
    fields.children.push_back(Ref("VendorTypeRef", goods ? "Goods" : "Services"));
    fields.children.push_back(Ref("TermsRef", goods ? "Net 30" : "Net 15"));
    oBooks.Add("Vendor", fields);
    oVendors.push_back(name);
  }

  // Takes the forms of all shelves in turn; when there are no more of them, other qualities follow.
  void AddItem(std::size_t index) {
    SetListTime(index, oSize.items);
    const auto shelves = words::Shelves();
    const words::Goods& goods = shelves[index % shelves.size()];
    const std::size_t turn = index / shelves.size();
    const std::string form(goods.forms[turn % goods.forms.size()]);
    const std::size_t quality = turn / goods.forms.size();
    Ware ware{.name = std::string(goods.name) + ' ' + form};
    if (quality > 0) {
      ware.name = std::string(goods.name.substr(0, 15)) + " #" + std::to_string(index);
    }
    ware.counted = !oChance.InHundred(20);
    const int cost = goods.cost * (100 + oChance.Between(0, 60)) / 100;
    const int price = cost * oChance.Between(140, 190) / 100 / 5 * 5 + 4;
    const std::string text = std::string(goods.name) + ", " + form;
    oBooks.Add(ware.counted ? "ItemInventory" : "ItemNonInventory",
               ware.counted ? Counted(ware, text, cost, price) : Uncounted(ware, text, price));
    oWares.push_back(std::move(ware));
  }

  Element Counted(Ware& ware, const std::string& text, int cost, int price) {
    ware.onHand = oChance.Between(3, 20) * 6;
    Element fields;
    fields.Add("Name", ware.name);
    fields.children.push_back(Ref("SalesTaxCodeRef", "Tax"));
    fields.Add("SalesDesc", text);
    fields.Add("SalesPrice", MoneyText(price));
    fields.children.push_back(Ref("IncomeAccountRef", "Merchandise Sales"));
    fields.Add("PurchaseDesc", text);
    fields.Add("PurchaseCost", MoneyText(cost));
    fields.children.push_back(Ref("COGSAccountRef", "Cost of Goods Sold"));
    if (!oVendors.empty()) {
      const std::span<const std::string> vendors(oVendors);
      fields.children.push_back(Ref("PrefVendorRef", oChance.Of(vendors)));
    }
    fields.children.push_back(Ref("AssetAccountRef", "Inventory Asset"));
    fields.Add("ReorderPoint", std::to_string(kReorderPoint));
    fields.Add("QuantityOnHand", std::to_string(ware.onHand));
    return fields;
  }

  static Element Uncounted(const Ware& ware, const std::string& text, int price) {
    Element fields;
    fields.Add("Name", ware.name);
    fields.children.push_back(Ref("SalesTaxCodeRef", "Tax"));
    Element& sale = fields.Add("SalesOrPurchase");
    sale.Add("Desc", text);
    sale.Add("Price", MoneyText(price));
    sale.children.push_back(Ref("AccountRef", "Merchandise Sales"));
    return fields;
  }

  void AddCustomer(std::size_t index) {
    SetListTime(index, oSize.customers);
    if (!sLastFirm.empty() && oChance.InHundred(20)) return AddJob();
    const bool firm = oChance.InHundred(55);
    const People::Person person = oPeople.NewPerson();
    const std::string name =
        oPeople.Unique(firm ? oPeople.NewFirm(words::Trades()) : person.last + ", " + person.first);
    const Sort sort = !firm                   ? Sort::kRetail
                      : oChance.InHundred(70) ? Sort::kContractor
                                              : Sort::kWholesale;
    const Terms& terms = kTermsOf[static_cast<std::size_t>(sort)];
    Element fields;
    fields.Add("Name", name);
    if (firm) fields.Add("CompanyName", name);
    fields.Add("FirstName", person.first);
    fields.Add("LastName", person.last);
    fields.children.push_back(oPeople.NewAddress("BillAddress", firm ? name : person.Whole()));
    fields.Add("Phone", oPeople.NewPhone());
    fields.Add("Email", People::MailOf(person.first, firm ? name : ""));
    fields.Add("Contact", person.Whole());
    fields.children.push_back(Ref("CustomerTypeRef", terms.type));
    fields.children.push_back(Ref("TermsRef", terms.terms));
    fields.children.push_back(
        Ref("SalesRepRef", oChance.Of(std::span<const std::string_view>(kRepInitials))));
    fields.children.push_back(Ref("SalesTaxCodeRef", sort == Sort::kWholesale ? "Non" : "Tax"));
    fields.children.push_back(Ref("ItemSalesTaxRef", "Sonoma County"));
    fields.Add("AccountNumber", std::to_string(1010 + index * 10));
    if (!terms.creditLimit.empty()) fields.Add("CreditLimit", terms.creditLimit);
    fields.Add("JobStatus", "None");
    oBooks.Add("Customer", fields);
    oBuyers.push_back({name, sort});
    sLastFirm = firm ? name : "";
  }

  // Adds a job of the firm that was added before; a firm has one job at most.
  void AddJob() {
    const std::string name(oChance.Of(words::Jobs()));
    Element fields;
    fields.Add("Name", name);
    fields.children.push_back(Ref("ParentRef", sLastFirm));
    fields.children.push_back(oPeople.NewAddress("BillAddress", sLastFirm));
    fields.children.push_back(Ref("TermsRef", "Net 30"));
    fields.children.push_back(Ref("SalesTaxCodeRef", "Tax"));
    fields.children.push_back(Ref("ItemSalesTaxRef", "Sonoma County"));
    fields.Add("JobStatus", "InProgress");
    fields.Add("JobDesc", name);
    oBooks.Add("Customer", fields);
    oBuyers.push_back({sLastFirm + ':' + name, Sort::kContractor});
    sLastFirm.clear();
  }

  void Sell(int day) {
    SetTime(day);
    const Buyer& buyer = oChance.Of(std::span<const Buyer>(oBuyers));
    std::vector<Element> lines;
    for (int i = oChance.Between(1, 4); i > 0; --i) lines.push_back(SoldLine(buyer));
    if (oChance.InHundred(25)) lines.push_back(Line("InvoiceLineAdd", "Delivery", 1));
    Element fields;
    fields.children.push_back(Ref("CustomerRef", buyer.fullName));
    fields.children.push_back(Ref("ClassRef", oChance.InHundred(70) ? "Store" : "Yard"));
    fields.Add("TxnDate", Date(day));
    fields.children.push_back(Ref("ShipMethodRef", "Will call"));
    fields.children.push_back(Ref("CustomerMsgRef", "Thank you for your business."));
    std::ranges::move(lines, std::back_inserter(fields.children));
    const Element& invoice = oBooks.Add("Invoice", fields);
    Agree(buyer, invoice, day);
    Restock(day);
  }

  Element SoldLine(const Buyer& buyer) {
    Ware& ware = oWares[oChance.Below(oWares.size())];
    const int quantity = oChance.Between(1, buyer.sort == Sort::kRetail ? 4 : 12);
    ware.onHand -= quantity;
    if (ware.counted && ware.onHand < kReorderPoint) oShort.push_back(&ware);
    return Line("InvoiceLineAdd", ware.name, quantity);
  }

  static Element Line(std::string_view name, std::string_view item, int quantity) {
    Element line{.name = std::string(name)};
    line.children.push_back(Ref("ItemRef", item));
    line.Add("Quantity", std::to_string(quantity));
    return line;
  }

  // Decides when the buyer will pay the invoice, and how much of it.
  void Agree(const Buyer& buyer, const Element& invoice, int day) {
    const std::string amount(invoice.ChildText("BalanceRemaining"));
    if (Decimal::Of(amount) <= Decimal()) return;
    const int due =
        day + (buyer.sort == Sort::kRetail ? oChance.Between(0, 5) : oChance.Between(8, 45));
    const int fate = oChance.Between(1, 100);
    if (fate > 85) return;
    const bool half = fate > 65;
    const Decimal paid =
        half ? (Decimal::Of(amount) / Decimal::Whole(2)).Cents() : Decimal::Of(amount);
    if (paid <= Decimal()) return;
    oDebts.emplace(due,
                   Debt{buyer.fullName, std::string(invoice.ChildText("TxnID")), paid.ToString(2)});
  }

  // The monthly bills and the payments of customers that fall due up to the day.
  void ReachDay(int day) {
    constexpr int kMonth = 30;
    for (; iNextMonth <= day; iNextMonth += kMonth) {
      CollectUntil(iNextMonth);
      PayMonthly();
    }
    CollectUntil(day);
  }

  void PayMonthly() {
    SetTime(std::max(iNextMonth, iDay));
    WriteCheck("Mill District Properties", "Rent", 185'000);
    WriteCheck("County Power and Water", "Utilities", oChance.Between(18'000, 34'000));
  }

  void WriteCheck(std::string_view payee, std::string_view account, std::int64_t cents) {
    Element fields;
    fields.children.push_back(Ref("AccountRef", "Checking"));
    fields.children.push_back(Ref("PayeeEntityRef", payee));
    fields.Add("RefNumber", std::to_string(iNextCheck++));
    fields.Add("TxnDate", Date(iNextMonth));
    Element& line = fields.Add("ExpenseLineAdd");
    line.children.push_back(Ref("AccountRef", account));
    line.Add("Amount", MoneyText(cents));
    oBooks.Add("Check", fields);
  }

  void CollectUntil(int day) {
    while (!oDebts.empty() && oDebts.begin()->first <= day) {
      const auto [due, debt] = *oDebts.begin();
      oDebts.erase(oDebts.begin());
      Collect(due, debt);
    }
  }

  void Collect(int day, const Debt& debt) {
    SetTime(std::max(day, iDay));
    const std::string_view method = oChance.Of(std::span<const std::string_view>(kMethods));
    Element fields;
    fields.children.push_back(Ref("CustomerRef", debt.buyer));
    fields.Add("TxnDate", Date(day));
    if (method == "Check") fields.Add("RefNumber", std::to_string(oChance.Between(1001, 9899)));
    fields.Add("TotalAmount", debt.amount);
    fields.children.push_back(Ref("PaymentMethodRef", method));
    fields.children.push_back(Ref("DepositToAccountRef", "Checking"));
    Element& applied = fields.Add("AppliedToTxnAdd");
    applied.Add("TxnID", debt.invoice);
    applied.Add("PaymentAmount", debt.amount);
    oBooks.Add("ReceivePayment", fields);
  }

  // Buys all wares that have run short from one of the vendors, on one bill.
  void Restock(int day) {
    std::vector<Ware*> wares;
    std::ranges::sort(oShort);
    std::ranges::unique_copy(oShort, std::back_inserter(wares));
    oShort.clear();
    if (wares.empty() || oVendors.empty()) return;
    SetTime(day);
    Element fields;
    fields.children.push_back(Ref("VendorRef", oChance.Of(std::span<const std::string>(oVendors))));
    fields.Add("TxnDate", Date(day));
    fields.Add("RefNumber", std::to_string(oChance.Between(10000, 99999)));
    for (Ware* ware : wares) {
      constexpr int kCarton = 72;
      ware->onHand += kCarton;
      fields.children.push_back(Line("ItemLineAdd", ware->name, kCarton));
    }
    oBooks.Add("Bill", fields);
  }

  static constexpr int kReorderPoint = 12;

  const BusinessSize oSize;
  Chance oChance;
  People oPeople;
  Bookkeeper oBooks;
  int iDay = 0;
  int iMinute = kOpens;
  int iNextMonth = 0;
  int iNextCheck = 2001;
  std::vector<std::string> oVendors;
  std::vector<Ware> oWares;
  std::vector<Ware*> oShort;  // in this sale
  std::vector<Buyer> oBuyers;
  std::multimap<int, Debt> oDebts;  // by the day of payment
  std::string sLastFirm;            // without a job so far
};

}  // namespace

std::string MakeBusiness(const BusinessSize& size) { return Business(size).Make(); }

}  // namespace ostrel::simulator
