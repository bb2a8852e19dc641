#include <gtest/gtest.h>

#include <string>

#include "simulator/company/ObjectList.h"

namespace ostrel::simulator {
namespace {

Text KeyOfNumber(const std::string& number) {
  Element object{.name = "Invoice"};
  object.Add("TxnNumber", number);
  object.Add("TxnDate", "2026-11-21");
  return ObjectList(*FindKind("Invoice")).KeyOf(object);
}

TEST(ObjectList, OrdersTheTransactionsOfADayByNumbersOfAnyLength) {
  EXPECT_LT(KeyOfNumber("9"), KeyOfNumber("10"));
  EXPECT_LT(KeyOfNumber("999999999"), KeyOfNumber("1000000000"));
}

Element Customer(const std::string& id, const std::string& name, const std::string& terms) {
  Element customer{.name = "Customer"};
  customer.Add("ListID", id);
  customer.Add("FullName", name);
  customer.Add("IsActive", "true");
  if (!terms.empty()) customer.Add("TermsRef").Add("ListID", terms);
  return customer;
}

class CustomersTest : public testing::Test {
 protected:
  bool Put(const Element& object) { return oList.Put(oList.Prepare(object)); }
  std::uint64_t SerialOf(const Text& key) const { return oList.InOrder().at(key).serial; }

  ObjectList oList{*FindKind("Customer")};
};

TEST_F(CustomersTest, KnowsWhatIsReferredTo) {
  Put(Customer("1", "A", "T"));
  Put(Customer("2", "B", "T"));
  EXPECT_TRUE(oList.Refers("T"));
  EXPECT_FALSE(oList.Refers("1"));  // an object's own ID is no reference

  oList.Remove("1");
  EXPECT_TRUE(oList.Refers("T"));

  oList.Remove("2");
  EXPECT_FALSE(oList.Refers("T"));
}

TEST_F(CustomersTest, KnowsWhatIsReferredToAfterAChange) {
  Put(Customer("1", "A", "T"));

  Put(Customer("1", "A", "U"));

  EXPECT_FALSE(oList.Refers("T"));
  EXPECT_TRUE(oList.Refers("U"));
}

TEST_F(CustomersTest, WhatFindsNoPlaceCountsForNothing) {
  Put(Customer("1", "A", ""));

  EXPECT_FALSE(Put(Customer("2", "A", "T")));

  EXPECT_FALSE(oList.Refers("T"));
}

// A set of changes is prepared as a whole, and carried out with all removals first.
TEST_F(CustomersTest, AnObjectKeepsItsSerialWhenItIsChangedAndRenamed) {
  Put(Customer("1", "A", "T"));
  const std::uint64_t serial = SerialOf(u"a");
  auto prepared = oList.Prepare(Customer("1", "B", "T"));

  oList.Remove("1");
  EXPECT_EQ(oList.FindBySerial(serial), nullptr);
  oList.Put(std::move(prepared));

  ASSERT_NE(oList.FindBySerial(serial), nullptr);
  EXPECT_EQ(oList.FindBySerial(serial)->ChildText("FullName"), "B");
  EXPECT_EQ(oList.Find("1"), oList.FindBySerial(serial));
}

TEST_F(CustomersTest, NoTwoObjectsHaveOneSerial) {
  Put(Customer("1", "A", ""));
  const std::uint64_t first = SerialOf(u"a");
  oList.Remove("1");

  Put(Customer("1", "A", ""));

  EXPECT_NE(SerialOf(u"a"), first);
  EXPECT_EQ(oList.FindBySerial(first), nullptr);
}

}  // namespace
}  // namespace ostrel::simulator
