#include <gtest/gtest.h>

#include "simulator/tool/CompanyOptions.h"

namespace ostrel::simulator {
namespace {

std::string Complaint(const std::vector<Text>& arguments) {
  try {
    ParseCompanyOptions(arguments);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

TEST(CompanyOptions, AreForASmallBusinessUnlessTheySayOtherwise) {
  const CompanyOptions options = ParseCompanyOptions({u"a.qbw"});

  EXPECT_EQ(options.task, CompanyTask::kCreate);
  EXPECT_EQ(options.file, u"a.qbw");
  EXPECT_EQ(options.size.customers, BusinessSize().customers);
}

TEST(CompanyOptions, TakeEveryNumber) {
  const CompanyOptions options =
      ParseCompanyOptions({u"--customers", u"1", u"--vendors", u"2", u"--items", u"3",
                           u"--invoices", u"4", u"--seed", u"4294967295", u"a.qbw"});

  EXPECT_EQ(options.size.customers, 1u);
  EXPECT_EQ(options.size.vendors, 2u);
  EXPECT_EQ(options.size.items, 3u);
  EXPECT_EQ(options.size.invoices, 4u);
  EXPECT_EQ(options.size.seed, 4294967295u);
}

TEST(CompanyOptions, TakeATask) {
  EXPECT_EQ(ParseCompanyOptions({u"--check", u"a.qbw"}).task, CompanyTask::kCheck);
  const CompanyOptions print = ParseCompanyOptions({u"--print", u"a.qbw", u"Invoice"});
  EXPECT_EQ(print.task, CompanyTask::kPrint);
  EXPECT_EQ(print.kind, u"Invoice");
  EXPECT_EQ(ParseCompanyOptions({u"--schema", u"a.xsd"}).task, CompanyTask::kSchema);
  EXPECT_EQ(ParseCompanyOptions({u"--messages"}).task, CompanyTask::kMessages);
  EXPECT_EQ(ParseCompanyOptions({u"--help"}).task, CompanyTask::kHelp);
}

TEST(CompanyOptions, ComplainInWords) {
  EXPECT_EQ(Complaint({}), "there is no company file");
  EXPECT_EQ(Complaint({u"--what", u"a.qbw"}), "there is no option --what");
  EXPECT_EQ(Complaint({u"--items"}), "--items needs a value");
  EXPECT_EQ(Complaint({u"--items", u"-1", u"a.qbw"}),
            "--items takes a number from 0 to 1000000, not \"-1\"");
  EXPECT_EQ(Complaint({u"a.qbw", u"b.qbw"}), "too much behind the file: b.qbw");
  EXPECT_EQ(Complaint({u"--check", u"--print", u"a.qbw"}),
            "one thing at a time: --check, --print, --schema or --messages");
  EXPECT_EQ(Complaint({u"--check", u"--seed", u"1", u"a.qbw"}),
            "numbers are for a company that is created");
  EXPECT_EQ(Complaint({u"--messages", u"a.qbw"}), "--messages takes no file: a.qbw");
  EXPECT_EQ(Complaint({u"--messages", u"--what"}), "there is no option --what");
  EXPECT_EQ(Complaint({u"--seed", u"1", u"--messages"}),
            "numbers are for a company that is created");
  EXPECT_EQ(Complaint({u"--items", u"0", u"a.qbw"}), "invoices need customers and items");
}

}  // namespace
}  // namespace ostrel::simulator
