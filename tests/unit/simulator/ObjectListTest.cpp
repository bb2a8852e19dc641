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

}  // namespace
}  // namespace ostrel::simulator
