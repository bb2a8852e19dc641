#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "simulator/kinds/Kinds.h"
#include "simulator/messages/Messages.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel::simulator {
namespace {

std::string Words(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view word : words) text.append(" ").append(word);
  return text;
}

std::string NamesIn(const Field& field) {
  std::string text;
  for (const auto& [use, name] :
       {std::pair(Use::kRet, " ret "), {Use::kAdd, " add "}, {Use::kMod, " mod "}}) {
    if (!field.NameIn(use).empty()) text.append(name).append(field.NameIn(use));
  }
  return text;
}

// All that the stand-in makes of a field.
std::string Described(const Field& field) {
  std::string text = NamesIn(field);
  if (field.type == FieldType::kLine) text += ", line";
  if (!field.refers.empty()) text += ", to " + std::string(field.refers);
  if (!field.accountTypes.empty()) text += ", one of" + Words(field.accountTypes);
  if (!field.otherwise.empty()) text += ", otherwise " + std::string(field.otherwise);
  if (!field.source.reference.empty()) {
    text += ", from " + std::string(field.source.reference) + Words(field.source.paths);
  }
  return text;
}

// The fields that only the definitions speak of are left out.
void Describe(std::span<const Field> fields, const std::string& parent,
              std::vector<std::string>& lines) {
  for (const Field& field : fields) {
    const std::string described = Described(field);
    if (described != NamesIn(field)) lines.push_back(parent + described);
    Describe(field.children, parent + ' ', lines);
  }
}

// The list is the one that clients can rely on: who changes a table changes it, too.
TEST(Kinds, HaveTheFieldsOfTheList) {
  std::vector<std::string> lines;
  for (const Kind* kind : AllKinds()) {
    lines.emplace_back(kind->name);
    Describe(kind->fields, " ", lines);
  }

  std::ifstream list(OSTREL_TEST_DATA "/fields.txt");
  std::vector<std::string> listed;
  for (std::string line; std::getline(list, line);) listed.push_back(line);

  std::string all;
  for (const std::string& line : lines) all += line + '\n';
  EXPECT_GT(lines.size(), 500u);
  EXPECT_TRUE(lines == listed) << all;
}

TEST(Kinds, FindWhatEveryReferenceNames) {
  const auto check = [](const auto& self, std::string_view kind,
                        std::span<const Field> fields) -> void {
    for (const Field& field : fields) {
      const bool isSet = field.type != FieldType::kReference || !KindsNamed(field.refers).empty();
      const bool isForeign = field.NameIn(Use::kRet).starts_with("SalesTaxReturn");
      EXPECT_TRUE(isSet || isForeign) << kind << NamesIn(field);
      self(self, kind, field.children);
    }
  };
  for (const Kind* kind : AllKinds()) check(check, kind->name, kind->fields);
}

// In both orders: the finder goes on from the field that it found last.
void ExpectFound(std::span<const Field> fields) {
  FieldFinder forward(fields, Use::kRet);
  FieldFinder backward(fields, Use::kRet);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Field& first = fields[i];
    const Field& last = fields[fields.size() - 1 - i];
    for (auto& [finder, field] : {std::pair(&forward, &first), std::pair(&backward, &last)}) {
      EXPECT_EQ(finder->Find(field->name), FindField(fields, field->name, Use::kRet));
    }
    EXPECT_EQ(forward.Find("Unknown"), nullptr);
    ExpectFound(first.children);
  }
}

TEST(Kinds, HaveFieldsThatAreFoundInAnyOrder) {
  for (const Kind* kind : AllKinds()) ExpectFound(kind->fields);
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
