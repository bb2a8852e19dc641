#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "simulator/company/CompanyReader.h"
#include "simulator/tool/Business.h"
#include "simulator/tool/CompanyCheck.h"
#include "tests/unit/simulator/FakeCompanyStorage.h"

namespace ostrel::simulator {
namespace {

using doubles::FakeCompanyStorage;

const Stamp kNow = {1262682187, "2010-01-05T09:03:07+00:00"};
constexpr char16_t kPath[] = u"made.qbw";

std::size_t Count(const Company& company, std::string_view kinds) {
  std::size_t count = 0;
  for (const Kind* kind : KindsNamed(kinds)) count += company.List(*kind).InOrder().size();
  return count;
}

std::size_t ProblemsOf(const std::string& file) {
  FakeCompanyStorage storage;
  storage.Files[kPath] = file;
  const CompanyReport report = CheckCompany(kPath, storage, kNow);
  for (const Text& problem : report.problems) ADD_FAILURE() << ToUtf8(problem);
  return report.problems.size();
}

TEST(Business, HasAsMuchOfEverythingAsWasAskedFor) {
  const auto nothing = CompanyFromBytes(
      MakeBusiness({.customers = 0, .vendors = 0, .items = 0, .invoices = 0}), kNow);
  const auto company = CompanyFromBytes(
      MakeBusiness({.customers = 31, .vendors = 5, .items = 40, .invoices = 17}), kNow);

  ASSERT_TRUE(nothing && company);
  EXPECT_EQ(Count(*nothing, "Customer") + Count(*nothing, "Vendor"), 0u);
  EXPECT_EQ(Count(*company, "Customer"), 31u);
  EXPECT_EQ(Count(*company, "Vendor"), 5u);
  EXPECT_EQ(Count(*company, "Item"), Count(*nothing, "Item") + 40);
  EXPECT_EQ(Count(*company, "Invoice"), 17u);
}

TEST(Business, IsTheSameForASeedAndAnotherForAnother) {
  EXPECT_EQ(MakeBusiness({.seed = 7}), MakeBusiness({.seed = 7}));
  EXPECT_NE(MakeBusiness({.seed = 7}), MakeBusiness({.seed = 8}));
}

TEST(Business, IsSoundInAllSizes) {
  EXPECT_EQ(ProblemsOf(MakeBusiness({})), 0u);
  EXPECT_EQ(ProblemsOf(MakeBusiness({.customers = 0, .vendors = 0, .items = 0, .invoices = 0})),
            0u);
  EXPECT_EQ(ProblemsOf(MakeBusiness({.customers = 1, .vendors = 0, .items = 1, .invoices = 50})),
            0u);
  EXPECT_EQ(
      ProblemsOf(MakeBusiness({.customers = 900, .vendors = 90, .items = 600, .invoices = 90})),
      0u);
}

TEST(Business, OfTheRepositorysSampleIsSound) {
  std::ifstream file(OSTREL_TEST_DATA "/../../samples/sample.qbw", std::ios::binary);

  EXPECT_EQ(ProblemsOf({std::istreambuf_iterator<char>(file), {}}), 0u);
}

TEST(Business, SaysEverythingItself) {
  const auto company = CompanyFromBytes(MakeBusiness({}), kNow);

  ASSERT_TRUE(company);
  EXPECT_FALSE(company->IsCompleted());
  EXPECT_EQ(company->ToBytes(), MakeBusiness({}));
}

TEST(Business, IsOwedPartOfWhatItHasSold) {
  const auto company = CompanyFromBytes(MakeBusiness({}), kNow);
  std::size_t paid = 0, partly = 0, open = 0;

  for (const auto& [key, invoice] : company->List(*FindKind("Invoice")).InOrder()) {
    if (invoice.ChildText("IsPaid") == "true") {
      ++paid;
    } else {
      ++(invoice.ChildText("AppliedAmount") == "0.00" ? open : partly);
    }
  }

  EXPECT_GT(paid, 0u);
  EXPECT_GT(partly, 0u);
  EXPECT_GT(open, 0u);
}

}  // namespace
}  // namespace ostrel::simulator
