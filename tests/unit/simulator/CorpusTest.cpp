// Replays the seeds of the fuzz target, which judges each of them itself.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace ostrel::simulator {
namespace {

TEST(QbxmlCorpus, IsAnsweredOrRefused) {
  int replayed = 0;

  for (const auto& entry :
       std::filesystem::directory_iterator(OSTREL_TEST_DATA "/../fuzz/corpus/qbxml")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    SCOPED_TRACE(entry.path().filename().string());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++replayed;
  }

  EXPECT_GE(replayed, 20);
}

}  // namespace
}  // namespace ostrel::simulator
