#include <gtest/gtest.h>

#include <vector>

#include "simulator/faults/Faults.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

// A company with these Fault elements, and one customer.
std::string CompanyWith(const std::string& faults) {
  return "<Company><Behaviour>" + faults +
         "</Behaviour><Customer><Name>Zeller</Name></Customer></Company>";
}

std::string AddVendor(const std::string& name) {
  return "<VendorAddRq><VendorAdd><Name>" + name + "</Name></VendorAdd></VendorAddRq>";
}

std::vector<std::uint32_t> FailuresOfAsking(Books& books, int times) {
  std::vector<std::uint32_t> failures;
  for (int i = 0; i < times; ++i) {
    failures.push_back(FailureOf([&] { books.Ask("<HostQueryRq/>"); }));
  }
  return failures;
}

TEST(Faults, StrikeAtEveryCall) {
  Books books(CompanyWith("<Fault operation='processRequest' error='0x80040408'/>"));

  EXPECT_EQ(FailuresOfAsking(books, 2), (std::vector<std::uint32_t>{0x80040408, 0x80040408}));
}

TEST(Faults, StrikeAtEveryThirdCall) {
  Books books(CompanyWith("<Fault operation='processRequest' error='0x80040408' every='3'/>"));

  EXPECT_EQ(FailuresOfAsking(books, 6),
            (std::vector<std::uint32_t>{0, 0, 0x80040408, 0, 0, 0x80040408}));
}

TEST(Faults, StrikeOnce) {
  Books books(
      CompanyWith("<Fault operation='processRequest' error='0x80040408' every='2' once='1'/>"));

  EXPECT_EQ(FailuresOfAsking(books, 4), (std::vector<std::uint32_t>{0, 0x80040408, 0, 0}));
}

TEST(Faults, AreCountedBeyondASession) {
  Books books(CompanyWith("<Fault operation='beginSession' error='0x80040408' every='2'/>"));
  const auto begin = [&] {
    books.sTicket = books.oProcessor.BeginSession(Books::kPath, FileMode::kDoNotCare);
  };
  books.oProcessor.EndSession(books.sTicket);

  EXPECT_EQ(FailureOf(begin), 0x80040408u);
  EXPECT_EQ(FailureOf(begin), 0u);
}

TEST(Faults, EndQuickBooks) {
  Books books(CompanyWith("<Fault operation='processRequest' dies='1' every='2'/>"));

  EXPECT_EQ(FailuresOfAsking(books, 2), (std::vector<std::uint32_t>{0, 0x800706BE}));
}

TEST(Faults, RespondToAMessageWithAStatusAndDoNotCarryItOut) {
  Books books(
      CompanyWith("<Fault message='VendorAddRq' statusCode='3175' "
                  "statusMessage='It is in use.' once='1'/>"));

  const QbxmlResponse refused = books.Tell(AddVendor("Mill"));
  const QbxmlResponse other = books.Add("Class", "<Name>Q</Name>");
  const QbxmlResponse again = books.Tell(AddVendor("Mill"));

  EXPECT_EQ(refused.Code(), "3175");
  EXPECT_EQ(refused.Attribute("statusSeverity"), "Error");
  EXPECT_EQ(refused.Message(), "It is in use.");
  EXPECT_EQ(other.Code(), "0");
  EXPECT_EQ(again.Code(), "0");
}

TEST(Faults, StopARequestAtTheirMessage) {
  Books books(CompanyWith("<Fault message='VendorAddRq' statusCode='3175' every='2'/>"));

  const std::string response = books.Ask(AddVendor("A") + AddVendor("B") + AddVendor("C"));

  EXPECT_EQ(QbxmlResponse(response, 0).Code(), "0");
  EXPECT_EQ(QbxmlResponse(response, 1).Code(), "3175");
  EXPECT_EQ(QbxmlResponse(response, 2).Code(), "3231");
}

TEST(Faults, FailARequestAtTheirMessage) {
  Books books(CompanyWith("<Fault message='VendorAddRq' error='0x80040400'/>"));

  EXPECT_EQ(FailureOf([&] { books.Ask(AddVendor("A")); }), 0x80040400u);
}

TEST(Faults, MakeAResponseOfAGivenSize) {
  Books books(CompanyWith("<Fault message='HostQueryRq' answerSize='100000'/>"));

  const std::string response = books.Ask("<HostQueryRq/>");

  EXPECT_EQ(response.size(), 100'000u);
  EXPECT_EQ(QbxmlResponse(response).Code(), "0");
}

TEST(Faults, DoNotCutAResponse) {
  Books books(CompanyWith("<Fault message='HostQueryRq' answerSize='10'/>"));

  EXPECT_EQ(QbxmlResponse(books.Ask("<HostQueryRq/>")).Code(), "0");
}

// A slip would otherwise look like a stand-in that ignores what it is told.
TEST(Faults, RefuseWhatTheyCannotRead) {
  for (const std::string attributes :
       {"", "error='0x80040408'", "operation='endSession'", "message='Customer'",
        "operation='processRequest' statusCode='1'", "message='HostQueryRq' seconds='1'",
        "operation='processRequest' message='HostQueryRq'", "message='HostQueryRq' statusCode='x'",
        "message='HostQueryRq' statusSeverity='Bad'", "message='HostQueryRq' answerSize='0'",
        "message='HostQueryRq' answerSize='300000001'", "message='HostQueryRq' every='0'",
        "message='HostQueryRq' once='yes'", "message='HostQueryRq' often='1'"}) {
    EXPECT_EQ(FailureOf([&] { Books books(CompanyWith("<Fault " + attributes + "/>")); }),
              0x80040409u)
        << attributes;
  }
  EXPECT_EQ(FailureOf([&] { Books books(CompanyWith("<Slip/>")); }), 0x80040409u);
}

}  // namespace
}  // namespace ostrel
