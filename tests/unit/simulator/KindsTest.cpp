#include <gtest/gtest.h>

#include <string>

#include "Books.h"
#include "simulator/Kinds.h"
#include "simulator/Messages.h"

namespace ostrel::simulator {
namespace {

// "JobTitle 120 " of each field that not every version has.
std::string Versions(std::span<const Field> fields) {
  std::string versions;
  for (const Field& field : fields) {
    if (field.since != 0)
      versions += std::string(field.name) + ' ' + std::to_string(field.since) + ' ';
    versions += Versions(field.children);
  }
  return versions;
}

std::string VersionsOf(std::string_view kind) { return Versions(FindKind(kind)->fields); }

TEST(Kinds, SaySinceWhichVersionAFieldExists) {
  EXPECT_EQ(VersionsOf("Customer"), "ClassRef 120 JobTitle 120 Cc 120 ");
  EXPECT_EQ(VersionsOf("Vendor"), "ClassRef 120 JobTitle 120 ");
  EXPECT_EQ(VersionsOf("Employee"), "JobTitle 120 ");
  EXPECT_EQ(VersionsOf("PaymentMethod"), "PaymentMethodType 70 ");
  EXPECT_EQ(VersionsOf("SalesTaxCode"), "SalesTaxCountry 80 ");
  for (const char* kind : {"ItemService", "ItemNonInventory", "ItemOtherCharge", "ItemInventory",
                           "ItemDiscount", "ItemSalesTax"}) {
    EXPECT_EQ(VersionsOf(kind), "ClassRef 120 ") << kind;
  }
  for (const char* kind : {"Invoice", "SalesReceipt", "CreditMemo", "Estimate", "SalesOrder"}) {
    EXPECT_EQ(VersionsOf(kind), "IsToBeEmailed 60 Other 60 ") << kind;
  }
  for (const char* kind : {"Account", "OtherName", "Class", "StandardTerms", "SalesRep",
                           "CustomerType", "VendorType", "JobType", "ShipMethod", "CustomerMsg"}) {
    EXPECT_EQ(VersionsOf(kind), "") << kind;
  }
}

TEST(Kinds, SaySinceWhichVersionAQueryHasAField) {
  EXPECT_EQ(Versions(FindMessage("CustomerQueryRq")->fields), "IncludeRetElement 40 OwnerID 20 ");
  EXPECT_EQ(Versions(FindMessage("InvoiceQueryRq")->fields),
            "RefNumberCaseSensitive 40 IncludeRetElement 40 OwnerID 20 ");
  EXPECT_EQ(Versions(FindMessage("CustomerAddRq")->fields),
            "ClassRef 120 JobTitle 120 Cc 120 IncludeRetElement 40 ");
}

TEST(Kinds, TakeAFieldFromItsVersionOnAndNotBefore) {
  Books books;
  const auto add = [&](const std::string& version, const std::string& name) {
    books.sVersion = version;
    return FailureOf([&] {
      books.Add("PaymentMethod",
                Books::Leaf("Name", name) + Books::Leaf("PaymentMethodType", "Visa"));
    });
  };

  EXPECT_EQ(add("6.0", "Early"), 0x80040400);
  EXPECT_EQ(add("7.0", "Exact"), 0u);
  EXPECT_EQ(add("8.0", "Late"), 0u);
}

TEST(Kinds, ReturnAFieldFromItsVersionOnAndNotBefore) {
  Books books;
  books.Add("PaymentMethod", "<Name>Card</Name>");
  const auto has = [&](const std::string& version) {
    books.sVersion = version;
    return books.Find("PaymentMethod", "Card").Has("PaymentMethodType");
  };

  EXPECT_FALSE(has("6.0"));
  EXPECT_TRUE(has("7.0"));
  EXPECT_TRUE(has("8.0"));
}

}  // namespace
}  // namespace ostrel::simulator
