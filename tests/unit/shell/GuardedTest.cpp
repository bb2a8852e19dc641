#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "gateway/Guarded.h"
#include "tests/unit/doubles/FakeTrace.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ForgetfulTrace : public doubles::FakeTrace {
 public:
  void AddStatus(TextView) override { throw std::bad_alloc(); }
};

TEST(Guarded, RunsTheEntry) {
  doubles::FakeTrace trace;
  bool ran = false;

  Guarded(trace, u"tick", [&] { ran = true; });

  EXPECT_TRUE(ran);
  EXPECT_THAT(trace.Status, IsEmpty());
}

TEST(Guarded, TurnsWhateverIsRaisedIntoAStatusLine) {
  doubles::FakeTrace trace;

  Guarded(trace, u"tick", [] { throw std::bad_alloc(); });
  Guarded(trace, u"tick", [] { throw RunTimeError(9, {}, u"Subscript out of range"); });
  Guarded(trace, u"tick", [] { throw std::runtime_error("broken"); });
  Guarded(trace, u"tick", [] { throw 1; });

  EXPECT_THAT(trace.Status, ElementsAre(u"tick: Out of memory", u"tick: Subscript out of range",
                                        u"tick: broken", u"tick: Unknown error"));
}

TEST(Guarded, SurvivesAStatusLineForWhichThereIsNoMemory) {
  ForgetfulTrace trace;
  bool after = false;

  Guarded(trace, u"tick", [] { throw std::bad_alloc(); });
  after = true;

  EXPECT_TRUE(after);
}

}  // namespace
}  // namespace ostrel
