#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "simulator/values/Status.h"

namespace ostrel::simulator {
namespace {

TEST(RequestProcessorErrors, CarryQuickBooksSentences) {
  std::ifstream file(OSTREL_TEST_DATA "/error-texts.txt");
  int compared = 0;

  for (std::string line; std::getline(file, line);) {
    const std::size_t tab = line.find('\t');
    if (!line.starts_with("0x") || tab == std::string::npos) continue;
    const auto number = static_cast<std::uint32_t>(std::stoul(line, nullptr, 16));
    EXPECT_EQ(SentenceFor(static_cast<std::int32_t>(number)), FromAscii(line.substr(tab + 1)))
        << line;
    ++compared;
  }

  EXPECT_EQ(compared, 48);
}

TEST(RequestProcessorErrors, HaveNoSentenceOutsideTheirRange) {
  EXPECT_EQ(SentenceFor(static_cast<std::int32_t>(0x800403FF)), u"");
  EXPECT_EQ(SentenceFor(static_cast<std::int32_t>(0x80040430)), u"");
}

TEST(RequestProcessorErrors, AreRaisedWithNumberAndSentence) {
  try {
    Fail(Hresult::kNoSession);
  } catch (const RequestProcessorError& error) {
    EXPECT_EQ(error.Number, static_cast<std::int32_t>(0x8004040C));
    EXPECT_EQ(error.Description, u"BeginSession method has not been called or it did not succeed.");
  }
}

}  // namespace
}  // namespace ostrel::simulator
