// Items: the goods and services that are sold and bought.
#include "simulator/kinds/CommonFields.h"
#include "simulator/kinds/Kinds.h"

namespace ostrel::simulator {
namespace {

using namespace shape;

// A thing that is either sold or bought, under one account.
constexpr auto kSalesOrPurchase =
    Table(Line("Desc", 4095), Either(1, Price("Price")), Either(1, Percent("PricePercent")),
          Needed(AccountRef("AccountRef")));

// One that is bought to be sold again.
constexpr auto kSalesAndPurchase =
    Table(Line("SalesDesc", 4095), Price("SalesPrice"), Needed(AccountRef("IncomeAccountRef")),
          Line("PurchaseDesc", 4095), Price("PurchaseCost"),
          Needed(AccountRef("ExpenseAccountRef")), Ref("PrefVendorRef", "Vendor"));

constexpr Field kEitherSales = Either(1, Group("SalesOrPurchase", kSalesOrPurchase));
constexpr Field kBothSales = Either(1, Group("SalesAndPurchase", kSalesAndPurchase));

constexpr auto kService = ListObject(
    Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
    Since(120, Ref("ClassRef", "Class")), Ref("ParentRef", "ItemService"),
    Shown(Integer("Sublevel")), Ref("SalesTaxCodeRef", "SalesTaxCode"), kEitherSales, kBothSales);

constexpr auto kNonInventory =
    ListObject(Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
               Since(120, Ref("ClassRef", "Class")), Ref("ParentRef", "ItemNonInventory"),
               Shown(Integer("Sublevel")), Line("ManufacturerPartNumber", 31),
               Ref("SalesTaxCodeRef", "SalesTaxCode"), kEitherSales, kBothSales);

constexpr auto kOtherCharge = ListObject(
    Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
    Since(120, Ref("ClassRef", "Class")), Ref("ParentRef", "ItemOtherCharge"),
    Shown(Integer("Sublevel")), Ref("SalesTaxCodeRef", "SalesTaxCode"), kEitherSales, kBothSales);

constexpr auto kInventory =
    ListObject(Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
               Since(120, Ref("ClassRef", "Class")), Ref("ParentRef", "ItemInventory"),
               Shown(Integer("Sublevel")), Line("ManufacturerPartNumber", 31),
               Ref("SalesTaxCodeRef", "SalesTaxCode"), Line("SalesDesc", 4095), Price("SalesPrice"),
               Needed(AccountRef("IncomeAccountRef")), Line("PurchaseDesc", 4095),
               Price("PurchaseCost"), Needed(AccountRef("COGSAccountRef")),
               Ref("PrefVendorRef", "Vendor"), Needed(AccountRef("AssetAccountRef")),
               Quantity("ReorderPoint"), In(kAdd | kRet, Quantity("QuantityOnHand", "0")),
               In(kAdd, Amount("TotalValue")), In(kAdd, Date("InventoryDate")));

constexpr auto kDiscount =
    ListObject(Needed(Line("Name", 31)), Shown(Line("FullName", 159)), Flag("IsActive", "true"),
               Since(120, Ref("ClassRef", "Class")), Ref("ParentRef", "ItemDiscount"),
               Shown(Integer("Sublevel")), Line("ItemDesc", 4095),
               Ref("SalesTaxCodeRef", "SalesTaxCode"), Either(1, Price("DiscountRate")),
               Either(1, Percent("DiscountRatePercent")), Needed(AccountRef("AccountRef")));

constexpr auto kSalesTax = ListObject(Needed(Line("Name", 31)), Flag("IsActive", "true"),
                                      Since(120, Ref("ClassRef", "Class")), Line("ItemDesc", 4095),
                                      Percent("TaxRate"), Ref("TaxVendorRef", "Vendor"));

constexpr Kind kKinds[] = {
    {.name = "ItemService", .fields = kService, .title = "Items", .family = "Item"},
    {.name = "ItemNonInventory", .fields = kNonInventory, .title = "Items", .family = "Item"},
    {.name = "ItemOtherCharge", .fields = kOtherCharge, .title = "Items", .family = "Item"},
    {.name = "ItemInventory", .fields = kInventory, .title = "Items", .family = "Item"},
    {.name = "ItemDiscount",
     .fields = kDiscount,
     .title = "Items",
     .family = "Item",
     .priceSign = -1},
    {.name = "ItemSalesTax", .fields = kSalesTax, .title = "Items", .family = "Item"},
};

}  // namespace

std::span<const Kind> ItemKinds() { return kKinds; }

}  // namespace ostrel::simulator
