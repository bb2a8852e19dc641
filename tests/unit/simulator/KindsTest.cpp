#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "simulator/kinds/Kinds.h"
#include "simulator/messages/Messages.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

// "JobTitle 120 " of each field that not every version has.
std::string Versions(std::span<const Field> fields) {
  std::string versions;
  for (const Field& field : fields) {
    if (field.since != 0) {
      versions += std::string(field.name) + ' ' + std::to_string(field.since) + ' ';
    }
    versions += Versions(field.children);
  }
  return versions;
}

std::string TypeName(FieldType type) {
  constexpr const char* names[] = {"text",  "boolean",   "count",   "integer", "amount",
                                   "price", "quantity",  "percent", "date",    "moment",
                                   "id",    "reference", "group",   "line"};
  return names[static_cast<int>(type)];
}

std::string Uses(Use uses) {
  std::string text;
  for (const auto& [use, name] :
       {std::pair(kAdd, " add"), {kMod, " mod"}, {kRet, " ret"}, {kQuery, " query"}}) {
    if ((uses & use) != 0) text += name;
  }
  return text;
}

std::string Words(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view word : words) text.append(" ").append(word);
  return text;
}

// "Name text 41, needed add": all that a table says of a field.
std::string Described(const Field& field) {
  std::string text = std::string(field.name) + ' ' + TypeName(field.type);
  const auto number = [&](const char* what, std::size_t value) {
    if (value != 0) text += what + std::to_string(value);
  };
  number(" ", field.maxLength);
  if (field.repeated) text += ", many";
  if (field.suffixed) text += ", suffixed";
  if (field.uses != kAnyUse) text += ", in" + Uses(field.uses);
  if (field.required != kNoUse) text += ", needed" + Uses(field.required);
  number(", choice ", static_cast<std::size_t>(field.choice));
  number(", either ", static_cast<std::size_t>(field.either));
  number(", mixed ", static_cast<std::size_t>(field.mixed));
  number(", since ", static_cast<std::size_t>(field.since));
  if (!field.refers.empty()) text += ", to " + std::string(field.refers);
  if (!field.values.empty()) text += ", one of" + Words(field.values);
  if (!field.otherwise.empty()) text += ", otherwise " + std::string(field.otherwise);
  if (!field.source.reference.empty()) {
    text += ", from " + std::string(field.source.reference) + Words(field.source.paths);
  }
  return text;
}

void Describe(std::span<const Field> fields, const std::string& parent,
              std::vector<std::string>& lines) {
  for (const Field& field : fields) {
    lines.push_back(parent + Described(field));
    Describe(field.children, parent + std::string(field.name) + '/', lines);
  }
}

std::string VersionsOf(std::string_view kind) { return Versions(FindKind(kind)->fields); }

// The list is the one that clients can rely on: who changes a table changes it, too.
TEST(Kinds, HaveTheFieldsOfTheList) {
  std::vector<std::string> lines;
  for (const Kind* kind : AllKinds()) {
    lines.emplace_back(kind->name);
    Describe(kind->fields, "  ", lines);
  }

  std::ifstream list(OSTREL_TEST_DATA "/fields.txt");
  std::vector<std::string> listed;
  for (std::string line; std::getline(list, line);) listed.push_back(line);

  ASSERT_GT(listed.size(), 500u);
  for (std::size_t i = 0; i < std::min(lines.size(), listed.size()); ++i) {
    ASSERT_EQ(lines[i], listed[i]) << "line " << i + 1;
  }
  EXPECT_EQ(lines.size(), listed.size());
}

// In both orders: the finder goes on from the field that it found last.
void ExpectFound(std::span<const Field> fields) {
  FieldFinder forward(fields, kRet);
  FieldFinder backward(fields, kRet);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& first = fields[i];
    const Field& last = fields[fields.size() - 1 - i];
    for (auto& [finder, field] : {std::pair(&forward, &first), std::pair(&backward, &last)}) {
      const std::string name = ElementName(*field, kRet);
      EXPECT_EQ(finder->Find(name), FindField(fields, name, kRet)) << name;
    }
    EXPECT_EQ(forward.Find("Unknown"), nullptr);
    ExpectFound(first.children);
  }
}

TEST(Kinds, HaveFieldsThatAreFoundInAnyOrder) {
  for (const Kind* kind : AllKinds()) ExpectFound(kind->fields);
}

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
