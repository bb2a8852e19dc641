#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "simulator/company/CompanyReader.h"
#include "tests/unit/simulator/Conversation.h"

namespace ostrel::simulator {
namespace {

const Stamp kNow = {1262682187, "2010-01-05T09:03:07+00:00"};

std::optional<Company> Read(std::string_view bytes) { return CompanyFromBytes(bytes, kNow); }

const ObjectList& Customers(const Company& company) { return company.List(*FindKind("Customer")); }

TEST(Company, ReadsWhatItsFileSays) {
  const auto company = Read(kTwoCustomers);

  ASSERT_TRUE(company);
  EXPECT_EQ(company->Name(), "Hale & Daughters");
  EXPECT_EQ(company->Product(), "QuickBooks Pro 2007");
  EXPECT_EQ(company->MajorVersion(), "17");
  EXPECT_EQ(company->MinorVersion(), "4");
  EXPECT_EQ(company->Country(), "US");
  EXPECT_EQ(Customers(*company).InOrder().size(), 2u);
}

TEST(Company, NeedsNoMoreThanItsElement) {
  const auto company = Read("<Company/>");

  ASSERT_TRUE(company);
  EXPECT_EQ(company->Product(), "QuickBooks Premier Edition 2008");
  EXPECT_EQ(company->MajorVersion(), "18");
  EXPECT_EQ(company->Information(), nullptr);
  EXPECT_EQ(company->Conducts().beginSession.error, 0u);
}

TEST(Company, CompletesACustomerWrittenByHand) {
  const auto company =
      Read("<Company><Customer><Phone>1</Phone><Name>Jo</Name></Customer></Company>");

  ASSERT_TRUE(company);
  const Element* customer = Customers(*company).FindByName("jo");
  ASSERT_NE(customer, nullptr);
  std::string fields;
  for (const Element& field : customer->children) fields += field.name + "=" + field.text + ";";
  EXPECT_EQ(fields,
            "ListID=80000001-1262682187;TimeCreated=2010-01-05T09:03:07+00:00;"
            "TimeModified=2010-01-05T09:03:07+00:00;EditSequence=1262682187;Name=Jo;FullName=Jo;"
            "IsActive=true;Sublevel=0;Phone=1;Balance=0.00;TotalBalance=0.00;JobStatus=None;");
}

TEST(Company, GivesNoListIdTwice) {
  const auto company = Read(
      "<Company><Customer><Name>A</Name></Customer>"
      "<Customer><ListID>8000000A-5</ListID><Name>B</Name></Customer></Company>");

  ASSERT_TRUE(company);
  EXPECT_EQ(Customers(*company).FindByName("A")->ChildText("ListID"), "8000000B-1262682187");
}

TEST(Company, IsRefusedWhenItIsNone) {
  EXPECT_FALSE(Read(""));
  EXPECT_FALSE(Read("not XML"));
  EXPECT_FALSE(Read("<Settings/>"));
  EXPECT_FALSE(Read("<Company><Customer/></Company>"));
  EXPECT_FALSE(Read("<Company><Behaviour beginSessionError='x'/></Company>"));
}

TEST(Company, IsRefusedWithANameOrListIdTwice) {
  EXPECT_FALSE(
      Read("<Company><Customer><Name>A</Name></Customer>"
           "<Customer><Name>a</Name></Customer></Company>"));
  EXPECT_FALSE(
      Read("<Company><Customer><ListID>80000001-1</ListID><Name>A</Name></Customer>"
           "<Customer><ListID>80000001-1</ListID><Name>B</Name></Customer></Company>"));
}

TEST(Company, WritesWhatItRead) {
  const auto company = Read(
      "<Company name='&lt;x&gt;' note='kept'><Behaviour beginSessionSeconds='1'/>"
      "<Later><Thing a='1'>x</Thing></Later><Customer><Name>A</Name></Customer></Company>");
  ASSERT_TRUE(company);

  const std::string bytes = company->ToBytes();

  const auto again = Read(bytes);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->ToBytes(), bytes);
  EXPECT_EQ(again->Name(), "<x>");
  EXPECT_EQ(again->Conducts().beginSession.delay, std::chrono::seconds(1));
  EXPECT_NE(bytes.find("<Thing a=\"1\">x</Thing>"), std::string::npos);
  EXPECT_NE(bytes.find("note=\"kept\""), std::string::npos);
}

TEST(Company, OfTheSampleIsABusiness) {
  std::ifstream file(OSTREL_TEST_DATA "/../../samples/sample.qbw", std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};

  const auto company = Read(bytes);

  ASSERT_TRUE(company);
  EXPECT_GE(Customers(*company).InOrder().size(), 12u);
  EXPECT_EQ(company->Product(), "QuickBooks Premier Edition 2008");
}

}  // namespace
}  // namespace ostrel::simulator
