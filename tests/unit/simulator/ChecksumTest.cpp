#include <gtest/gtest.h>

#include "simulator/company/Journal.h"

namespace ostrel::simulator {
namespace {

TEST(Checksum, IsTheSameEverywhere) {
  EXPECT_EQ(ChecksumText(Checksum("Zimmer & Co.")), "6281e2db2bcb2b75");
}

TEST(Checksum, SeesEveryChangedByte) {
  const std::string text = "Twenty-nine characters of text";
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string changed = text;
    changed[i] = static_cast<char>(changed[i] ^ 1);

    EXPECT_NE(Checksum(changed), Checksum(text)) << i;
  }
}

TEST(Checksum, SeesBytesThatHaveGone) {
  EXPECT_NE(Checksum(std::string(8, '\0')), Checksum(std::string(16, '\0')));
  EXPECT_NE(Checksum(std::string(1, '\0')), Checksum(""));
}

TEST(Checksum, DependsOnWhatCameBefore) { EXPECT_NE(Checksum("x", 1), Checksum("x", 2)); }

}  // namespace
}  // namespace ostrel::simulator
