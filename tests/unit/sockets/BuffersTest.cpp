#include <gtest/gtest.h>

#include <string>

#include "sockets/DottedAddress.h"
#include "sockets/SocketBuffers.h"
#include "util/TextBudget.h"

namespace ostrel {
namespace {

/// Empties the queue in portions of at most this many bytes.
std::string TakeAll(SendQueue& queue, std::size_t portion) {
  std::string all;
  while (!queue.Empty()) {
    const auto front = queue.Front();
    const std::size_t count = std::min(portion, front.size());
    all.append(front.data(), count);
    queue.Remove(count);
  }
  return all;
}

TEST(SendQueue, KeepsTheOrderAcrossChunks) {
  SendQueue queue;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    const std::string block(static_cast<std::size_t>(i), static_cast<char>('a' + i % 26));
    queue.AddBytes(block);
    expected += block;
  }

  EXPECT_EQ(queue.Size(), expected.size());
  EXPECT_EQ(TakeAll(queue, 777), expected);
}

TEST(SendQueue, SendsTextOneByteACharacter) {
  SendQueue queue;

  queue.AddText(u"a\u00FE\u001F");

  EXPECT_EQ(TakeAll(queue, 100), "a\xFE\x1F");
}

TEST(SendQueue, OffersALargeBlockWhole) {
  SendQueue queue;

  queue.AddBytes(std::string(3'000'000, 'x'));

  EXPECT_EQ(queue.Front().size(), 3'000'000u);
}

TEST(SendQueue, MovesNothingWhenSomeOfItIsTaken) {
  SendQueue queue;
  queue.AddBytes(std::string(1000, 'x'));
  const char* const before = queue.Front().data();

  queue.Remove(400);

  EXPECT_EQ(queue.Front().data(), before + 400);
  EXPECT_EQ(queue.Size(), 600u);
}

TEST(SendQueue, MovesNothingWhenMoreIsAdded) {
  SendQueue queue;
  queue.AddBytes(std::string("first"));
  const char* const before = queue.Front().data();

  for (int i = 0; i < 100'000; ++i) queue.AddBytes(std::string("more"));

  EXPECT_EQ(queue.Front().data(), before);
}

// Chunks of 100 bytes, 64 KiB, and the rest.
TEST(SendQueue, TakesBackItsEndAcrossChunks) {
  for (const std::size_t count : {1u, 2u, 29'999u, 34'463u, 34'464u, 34'465u, 99'999u, 100'000u}) {
    SendQueue queue;
    queue.AddBytes(std::string(100, 'a'));
    for (const char c : std::string("bcdefghijk")) queue.AddBytes(std::string(10'000, c));
    std::string expected(100, 'a');
    for (const char c : std::string("bcdefghijk")) expected.append(10'000, c);

    queue.RemoveLast(count);

    expected.resize(expected.size() - count);
    EXPECT_EQ(queue.Size(), expected.size());
    EXPECT_EQ(TakeAll(queue, 777) == expected, true) << count;
  }
}

TEST(SendQueue, AddsBehindWhatItTookBack) {
  SendQueue queue;
  queue.AddText(u"abc");
  queue.AddText(u"d");

  queue.RemoveLast(1);
  queue.AddText(u"e");
  queue.Remove(2);
  queue.RemoveLast(1);
  queue.RemoveLast(0);

  EXPECT_EQ(TakeAll(queue, 100), "c");
}

TEST(SendQueue, GivesBackTheMemoryOfWhatItTookBack) {
  const std::size_t before = ProcessTextBudget().Held();
  SendQueue queue;
  queue.AddText(u"abc");
  queue.AddText(Text(100'000, u'x'));

  queue.RemoveLast(100'000);
  EXPECT_EQ(ProcessTextBudget().Held() - before, 3u);
  queue.RemoveLast(3);

  EXPECT_EQ(ProcessTextBudget().Held(), before);
}

TEST(SendQueue, OffersNothingWhenItIsEmpty) {
  SendQueue queue;

  queue.AddText(u"");
  EXPECT_TRUE(queue.Front().empty());

  queue.AddText(u"x");
  queue.Clear();
  EXPECT_TRUE(queue.Empty());
  EXPECT_TRUE(queue.Front().empty());
}

TEST(ReceiveBuffer, GivesOutTheFrontAndKeepsTheRest) {
  ReceiveBuffer buffer;
  buffer.Append(std::string("abcdef"));

  EXPECT_EQ(buffer.Front(2), "ab");
  buffer.Remove(2);
  buffer.Append(std::string("gh"));

  EXPECT_EQ(buffer.Size(), 6u);
  EXPECT_EQ(buffer.Front(100), "cdefgh");
}

TEST(ReceiveBuffer, IsEmptiedInSmallPortions) {
  ReceiveBuffer buffer;
  std::string expected;
  for (int i = 0; i < 100'000; ++i) expected.push_back(static_cast<char>(i));
  buffer.Append(expected);

  std::string all;
  while (buffer.Size() > 0) {
    all += buffer.Front(3);
    buffer.Remove(3);
  }

  EXPECT_EQ(all, expected);
}

TEST(DottedAddress, IsFourNumbersUpTo255) {
  EXPECT_EQ(ParseDottedAddress(u"127.0.0.1"), 0x7F000001u);
  EXPECT_EQ(ParseDottedAddress(u"255.255.255.255"), 0xFFFFFFFFu);
  for (const TextView other : {u"", u"localhost", u"1.2.3", u"1.2.3.4.5", u"1.2.3.256", u"1.2.3.",
                               u".1.2.3", u"1..2.3", u"1.2.3.4 ", u"-1.2.3.4", u"1.2.3.00004"}) {
    EXPECT_FALSE(ParseDottedAddress(other).has_value()) << other.size();
  }
}

TEST(DottedAddress, IsWrittenInDecimal) {
  EXPECT_EQ(DottedAddress(0x0A0001FF), u"10.0.1.255");
  EXPECT_EQ(DottedAddress(0), u"0.0.0.0");
}

}  // namespace
}  // namespace ostrel
