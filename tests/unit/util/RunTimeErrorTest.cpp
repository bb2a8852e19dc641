#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

TEST(RunTimeError, IsMadeOfAnyException) {
  const auto own = AsRunTimeError(std::make_exception_ptr(RunTimeError(9, u"Here", u"Oops")), u"x");
  const auto memory = AsRunTimeError(std::make_exception_ptr(std::bad_alloc()), u"There");
  const auto other = AsRunTimeError(std::make_exception_ptr(std::logic_error("")), u"There");

  EXPECT_EQ(own.Number, 9);
  EXPECT_EQ(own.Source, u"Here");
  EXPECT_EQ(own.Description, u"Oops");
  EXPECT_EQ(memory.Number, 7);
  EXPECT_EQ(memory.Source, u"There");
  EXPECT_EQ(memory.Description, u"Out of memory");
  EXPECT_EQ(other.Number, 51);
  EXPECT_EQ(other.Description, u"Internal error");
}

TEST(PendingError, KeepsAnException) {
  PendingError pending;
  pending.SetFrom(std::make_exception_ptr(RunTimeError(10054, u"Here", u"Gone")), u"x");

  EXPECT_EQ(pending.Number, 10054);
  EXPECT_EQ(pending.Source, u"Here");
  EXPECT_EQ(pending.Description, u"Gone");
}

}  // namespace
}  // namespace ostrel
