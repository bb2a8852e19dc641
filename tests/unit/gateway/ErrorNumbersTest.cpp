#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

#include "quickbooks/ErrorNumbers.h"

namespace ostrel {
namespace {

std::int32_t Raw(std::uint32_t hresult) { return static_cast<std::int32_t>(hresult); }

// Numbers and sentences as tests/data/error-texts.txt lists them.
std::map<std::int32_t, Text> ListedTexts() {
  std::map<std::int32_t, Text> texts;
  std::ifstream file(OSTREL_TEST_DATA "/error-texts.txt");
  for (std::string line; std::getline(file, line);) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) continue;
    const auto number = static_cast<std::uint32_t>(std::stoul(line, nullptr, 0));
    texts[Raw(number)] = FromAscii(line.substr(tab + 1));
  }
  return texts;
}

TEST(ErrorTexts, AreTheListedSentences) {
  const auto listed = ListedTexts();

  ASSERT_EQ(listed.size(), 1u + 3u + 48u);
  for (const auto& [number, text] : listed) EXPECT_EQ(TextFor(number), text) << number;
}

TEST(ErrorTexts, GiveTheSameSentenceForBothFormsOfAParseError) {
  EXPECT_EQ(TextFor(1024), TextFor(Raw(0x80040400)));
  EXPECT_NE(TextFor(1024), std::nullopt);
}

TEST(ErrorTexts, GiveReducedNumbersTheirRawNumbersSentences) {
  EXPECT_EQ(TextFor(1030), TextFor(Raw(0x80040406)));
  EXPECT_EQ(TextFor(1050), TextFor(Raw(0x8004041A)));
}

TEST(ErrorTexts, DifferOnlyInQuotesForANameThatIsMissing) {
  const Text raw(TextFor(Raw(0x80040416)).value());

  EXPECT_NE(TextFor(1046), raw);
  EXPECT_EQ(ReplaceAll(TextFor(1046).value(), u"'", u""), raw);
}

// Required: only the raw form reaches the full table.
TEST(ErrorTexts, HaveNoSentenceForOtherReducedNumbers) {
  for (std::int32_t number = 1025; number <= 1072; ++number) {
    const bool listed = number == 1030 || number == 1046 || number == 1050;
    EXPECT_EQ(TextFor(number).has_value(), listed) << number;
  }
}

TEST(ErrorTexts, EndWithTheLastRawNumber) {
  EXPECT_NE(TextFor(Raw(0x8004042F)), std::nullopt);
  EXPECT_EQ(TextFor(Raw(0x80040430)), std::nullopt);
  EXPECT_EQ(TextFor(Raw(0x800403FF)), std::nullopt);
}

TEST(ErrorTexts, HaveNoSentenceForNumbersOfOthers) {
  EXPECT_EQ(TextFor(0), std::nullopt);
  EXPECT_EQ(TextFor(1), std::nullopt);
  EXPECT_EQ(TextFor(-1), std::nullopt);
  EXPECT_EQ(TextFor(INT32_MIN), std::nullopt);
  EXPECT_EQ(TextFor(INT32_MAX), std::nullopt);
}

}  // namespace
}  // namespace ostrel
