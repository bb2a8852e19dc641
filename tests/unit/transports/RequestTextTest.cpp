#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "tests/support/TextBudgetLimit.h"
#include "transports/RequestText.h"

namespace ostrel {
namespace {

// Pieces of this text in a row, so that a piece out of its place shows.
Text Alphabets(std::size_t characters) {
  Text text(characters, u'\0');
  for (std::size_t i = 0; i < characters; ++i) text[i] = static_cast<char16_t>(u'a' + i % 26);
  return text;
}

TEST(RequestText, PutsPiecesTogetherInOrder) {
  RequestText request;
  request.Append(u"<?xml?>");
  request.Append(u"");
  request.Append(u"<a/>");

  EXPECT_EQ(request.Length(), 11u);
  EXPECT_EQ(request.Take(), u"<?xml?><a/>");
}

TEST(RequestText, IsEmptyAfterItsTextWasTaken) {
  RequestText request;
  request.Append(u"first");
  request.Take();

  EXPECT_EQ(request.Length(), 0u);
  EXPECT_EQ(request.Take(), u"");
}

TEST(RequestText, TakesATextLongerThanAChunkInOnePiece) {
  const Text text = Alphabets(5'000'000);
  RequestText request;
  request.Append(text);

  EXPECT_EQ(request.Length(), text.size());
  EXPECT_TRUE(request.Take() == text);
}

TEST(RequestText, KeepsPiecesThatReachAcrossTheEdgeOfAChunk) {
  const Text text = Alphabets(3'000'000);
  RequestText request;
  for (TextView rest = text; !rest.empty();
       rest.remove_prefix(std::min<std::size_t>(rest.size(), 999))) {
    request.Append(rest.substr(0, 999));
  }

  EXPECT_EQ(request.Length(), text.size());
  EXPECT_TRUE(request.Take() == text);
}

TEST(RequestText, CountsItsMemoryAgainstTheBudget) {
  const Text text = Alphabets(3'000'000);
  {
    RequestText request;
    request.Append(text.substr(0, 1000));
    EXPECT_GE(ProcessTextBudget().Held(), 2'000u);
    EXPECT_LE(ProcessTextBudget().Held(), 4'100u);
    request.Append(text.substr(1000));
    EXPECT_EQ(ProcessTextBudget().Held(), 3u * 1024 * 1024 * 2);

    const Text whole = request.Take();
    EXPECT_TRUE(whole == text);
    EXPECT_EQ(ProcessTextBudget().Held(), whole.capacity() * 2);
  }
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST(RequestText, RaisesWantOfMemoryWhenItWouldPassTheBudget) {
  RequestText request;
  request.Append(Alphabets(1000));
  const TextBudgetLimit limit(3'000);

  EXPECT_THROW(request.Append(Alphabets(1000)), std::bad_alloc);

  request = {};
  EXPECT_EQ(ProcessTextBudget().Held(), 0u);
}

TEST(RequestText, RaisesWantOfMemoryForTheWholeText) {
  RequestText request;
  request.Append(Alphabets(2'000'000));
  const TextBudgetLimit limit(6'000'000);

  EXPECT_THROW(request.Take(), std::bad_alloc);
}

TEST(RequestText, HoldsATextOfExactlyOneChunk) {
  const Text text = Alphabets(1024 * 1024);
  RequestText request;
  request.Append(text);
  request.Append(u"z");

  EXPECT_TRUE(request.Take() == text + u"z");
}

}  // namespace
}  // namespace ostrel
