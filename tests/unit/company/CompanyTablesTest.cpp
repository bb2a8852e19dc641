#include <gtest/gtest.h>

#include "simulator/company/CompanyReader.h"
#include "simulator/tool/CompanyTables.h"

namespace ostrel::simulator {
namespace {

std::string Tables(const char* file, std::string_view kinds) {
  const auto company = CompanyFromBytes(file, kEpoch);
  return ToUtf8(CompanyTables(*company, kinds.empty() ? AllKinds() : KindsNamed(kinds)));
}

constexpr char kTwo[] =
    "<Company><Customer><Name>Zimmer</Name><Balance>1250.00</Balance></Customer>"
    "<Customer><Name>Archer</Name><Phone>555-0100</Phone></Customer>"
    "<Class><Name>Store</Name></Class></Company>";

TEST(CompanyTables, HaveTheColumnsThatAreUsedAndNumbersUnderEachOther) {
  EXPECT_EQ(Tables(kTwo, "Customer"),
            "Customer (2)\n"
            "Name    Phone     Balance  With jobs\n"
            "Archer  555-0100     0.00       0.00\n"
            "Zimmer            1250.00    1250.00\n");
}

TEST(CompanyTables, AreOneForEachKindThatHasObjects) {
  const std::string tables = Tables(kTwo, "");

  EXPECT_NE(tables.find("\n\nClass (1)\nName\nStore\n"), std::string::npos);
  EXPECT_EQ(tables.find("Vendor"), std::string::npos);
}

TEST(CompanyTables, CutLongTexts) {
  const std::string file =
      "<Company><Customer><Name>" + std::string(41, 'x') + "</Name></Customer></Company>";

  EXPECT_NE(Tables(file.c_str(), "Customer").find("\n" + std::string(39, 'x') + "\xE2\x80\xA6 "),
            std::string::npos);
}

TEST(CompanyTables, AreNothingForAnEmptyCompany) { EXPECT_EQ(Tables("<Company/>", ""), ""); }

}  // namespace
}  // namespace ostrel::simulator
