#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <vector>

#include "shell/programs/ConsoleLines.h"

namespace ostrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

// The reader of the lines: takes none while it sleeps.
class Reader {
 public:
  void Sleep() {
    const std::lock_guard lock(oMutex);
    bAsleep = true;
  }
  void WakeUp() {
    const std::lock_guard lock(oMutex);
    bAsleep = false;
    oChanged.notify_all();
  }
  ConsoleLines::Writer Writer() {
    return [this](TextView text) {
      std::unique_lock lock(oMutex);
      ++iBegun;
      oChanged.notify_all();
      oChanged.wait(lock, [this] { return !bAsleep; });
      Read.emplace_back(text);
      oChanged.notify_all();
    };
  }
  // Until somebody waits for the reader to take the nth line.
  void AwaitBegun(int count) {
    std::unique_lock lock(oMutex);
    ASSERT_TRUE(oChanged.wait_for(lock, seconds(30), [&] { return iBegun >= count; }));
  }
  std::vector<Text> AwaitRead(std::size_t count) {
    std::unique_lock lock(oMutex);
    EXPECT_TRUE(oChanged.wait_for(lock, seconds(30), [&] { return Read.size() >= count; }));
    return Read;
  }

 private:
  std::mutex oMutex;
  std::condition_variable oChanged;
  std::vector<Text> Read;
  int iBegun = 0;
  bool bAsleep = false;
};

TEST(ConsoleLines, AreAllWrittenInTheirOrderBeforeItEnds) {
  Reader reader;
  {
    ConsoleLines lines(reader.Writer());
    for (const TextView line : {u"a\n", u"b\n", u"c\n"}) lines.Add(Text(line));
  }

  EXPECT_THAT(reader.AwaitRead(3), ElementsAre(u"a\n", u"b\n", u"c\n"));
}

TEST(ConsoleLines, OfAReaderWhoHasStoppedAreLeftOutAndCounted) {
  Reader reader;
  reader.Sleep();
  ConsoleLines lines(reader.Writer(), 8);
  lines.Add(u"begun\n");
  reader.AwaitBegun(1);

  for (const TextView line : {u"ab\n", u"cd\n", u"ef\n", u"gh\n"}) lines.Add(Text(line));
  reader.WakeUp();

  EXPECT_THAT(reader.AwaitRead(4), ElementsAre(u"begun\n", u"ab\n", u"cd\n",
                                               u"(2 lines are left out here: nobody read them)\n"));
}

TEST(ConsoleLines, AreTakenAgainWhenThereIsRoomBehindTheCount) {
  Reader reader;
  reader.Sleep();
  ConsoleLines lines(reader.Writer(), 60);
  lines.Add(u"begun\n");
  reader.AwaitBegun(1);
  lines.Add(Text(60, u'x'));
  lines.Add(u"left out\n");

  reader.WakeUp();
  reader.AwaitRead(3);
  lines.Add(u"again\n");

  EXPECT_THAT(reader.AwaitRead(4),
              ElementsAre(u"begun\n", Text(60, u'x'),
                          u"(1 lines are left out here: nobody read them)\n", u"again\n"));
}

TEST(ConsoleLines, EndWithoutAReaderAfterTheirPatience) {
  auto reader = std::make_shared<Reader>();
  reader->Sleep();
  {
    ConsoleLines lines([reader, write = reader->Writer()](TextView text) { write(text); }, 100,
                       milliseconds(10));
    lines.Add(u"begun\n");
    reader->AwaitBegun(1);
  }

  reader->WakeUp();

  EXPECT_THAT(reader->AwaitRead(1), ElementsAre(u"begun\n"));
}

TEST(ConsoleLines, EndAsSoonAsTheLastIsWritten) {
  Reader reader;
  const auto begin = std::chrono::steady_clock::now();
  {
    ConsoleLines lines(reader.Writer(), 10'000, seconds(60));
    for (int i = 0; i < 1'000; ++i) lines.Add(u"a\n");
  }

  EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(30));
  EXPECT_EQ(reader.AwaitRead(1'000).size(), 1'000u);
}

TEST(ConsoleLines, GoOnAfterALineThatCouldNotBeWritten) {
  Reader reader;
  {
    ConsoleLines lines([write = reader.Writer()](TextView text) {
      if (text == u"a\n") throw std::length_error("no memory");
      write(text);
    });
    lines.Add(u"a\n");
    lines.Add(u"b\n");
  }

  EXPECT_THAT(reader.AwaitRead(1), ElementsAre(u"b\n"));
}

}  // namespace
}  // namespace ostrel
