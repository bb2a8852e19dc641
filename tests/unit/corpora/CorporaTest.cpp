// Replays the seeds of the fuzz targets, which judge each of them themselves.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/FuzzTarget.h"

namespace ostrel::fuzz {
namespace {

std::vector<std::filesystem::path> SeedsOf(const std::string& name) {
  std::vector<std::filesystem::path> seeds;
  for (const auto& entry :
       std::filesystem::directory_iterator(OSTREL_TEST_DATA "/../fuzz/corpus/" + name)) {
    seeds.push_back(entry.path());
  }
  std::sort(seeds.begin(), seeds.end());
  return seeds;
}

int Replay(const std::string& name) {
  const auto target = std::find_if(Targets().begin(), Targets().end(),
                                   [&](const Target& one) { return one.sName == name; });
  if (target == Targets().end()) return 0;
  int replayed = 0;
  for (const auto& seed : SeedsOf(name)) {
    std::ifstream file(seed, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    InputName() = "(" + seed.filename().string() + ")";
    target->Try(bytes);
    ++replayed;
  }
  return replayed;
}

TEST(Corpora, QbxmlIsProcessedOrRefused) { EXPECT_GE(Replay("qbxml"), 20); }
TEST(Corpora, SocketRequestsStayTheirClients) { EXPECT_GE(Replay("socket"), 8); }
TEST(Corpora, RequestFilesAreReadAsTheyAre) { EXPECT_GE(Replay("requestfile"), 8); }
TEST(Corpora, SettingsFilesAreReadAndWritten) { EXPECT_GE(Replay("settings"), 8); }
TEST(Corpora, LayoutsKeepEveryCharacter) { EXPECT_GE(Replay("layout"), 8); }
TEST(Corpora, ValidationReportsHaveABound) { EXPECT_GE(Replay("validation"), 8); }
TEST(Corpora, CommandLinesAreParsed) { EXPECT_GE(Replay("commandline"), 8); }
TEST(Corpora, JournalsCanBeReadAgain) { EXPECT_GE(Replay("journal"), 8); }
TEST(Corpora, CompaniesCanBeReadAgain) { EXPECT_GE(Replay("company"), 8); }

TEST(Corpora, EveryTargetHasATest) { EXPECT_EQ(Targets().size(), 9U); }

}  // namespace
}  // namespace ostrel::fuzz
