#include <gtest/gtest.h>

#include "simulator/values/Decimal.h"

namespace ostrel::simulator {
namespace {

TEST(Decimal, ReadsNumbersOfAllForms) {
  for (const auto& [text, same] : {std::pair{"12.5", "12.50"},
                                   {"-.5", "-0.50"},
                                   {"+3", "3.00"},
                                   {"007", "7.00"},
                                   {"4.", "4.00"},
                                   {"1.123456", "1.12346"},
                                   {"-0", "0.00"},
                                   {"9999999999.99", "9999999999.99"}}) {
    const auto number = Decimal::Parse(text);
    ASSERT_TRUE(number) << text;
    EXPECT_EQ(number->ToString(2), same);
  }
}

TEST(Decimal, RefusesWhatIsNoNumber) {
  for (const char* text : {"", "-", ".", "1,000", "1e3", "0x1", " 1", "--1", "1.2.3", "10000000000",
                           "9999999999.999999"}) {
    EXPECT_FALSE(Decimal::Parse(text)) << text;
  }
}

TEST(Decimal, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(Decimal::Of("2.345").Cents().ToString(2), "2.35");
  EXPECT_EQ(Decimal::Of("-2.345").Cents().ToString(2), "-2.35");
  EXPECT_EQ(Decimal::Of("2.34499").Cents().ToString(2), "2.34");
}

TEST(Decimal, MultipliesExactly) {
  EXPECT_EQ((Decimal::Of("2.5") * Decimal::Of("3.333")).ToString(0), "8.3325");
  EXPECT_EQ((Decimal::Of("-0.00001") * Decimal::Of("100000")).ToString(0), "-1");
  EXPECT_EQ((Decimal::Of("99999.99999") * Decimal::Of("99999.99999")).ToString(0), "9999999998");
}

TEST(Decimal, DividesToFiveDecimals) {
  EXPECT_EQ((Decimal::Of("10") / Decimal::Of("4")).ToString(0), "2.5");
  EXPECT_EQ((Decimal::Of("-1") / Decimal::Of("3")).ToString(0), "-0.33333");
  EXPECT_TRUE((Decimal::Of("1") / Decimal()).IsZero());
}

TEST(Decimal, StaysAtTheEndOfItsRange) {
  const Decimal most = Decimal::Of("9999999999.99999");
  Decimal much = most * most;

  EXPECT_FALSE(much.IsAmount());
  for (int i = 0; i < 10; ++i) much += much;
  EXPECT_FALSE(much.IsAmount());
  EXPECT_GT(much, most);
  EXPECT_LT(most.Negated() * most, most.Negated());
}

}  // namespace
}  // namespace ostrel::simulator
