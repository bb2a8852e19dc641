#include <gtest/gtest.h>

#include "simulator/faults/Behaviour.h"

namespace ostrel::simulator {
namespace {

using std::chrono::milliseconds;

std::optional<Behaviour> Read(std::vector<Attribute> attributes) {
  BehaviourSlip slip;
  return ReadBehaviour(Element{.name = "Behaviour", .attributes = std::move(attributes)}, slip);
}

TEST(Behaviour, AsksForNothingWithoutAttributes) {
  const auto behaviour = Read({});

  ASSERT_TRUE(behaviour);
  EXPECT_EQ(behaviour->openConnection.delay, milliseconds(0));
  EXPECT_EQ(behaviour->openConnection.error, 0u);
}

TEST(Behaviour, ReadsEachOperationsOwn) {
  const auto behaviour = Read({{"openConnectionSeconds", "1"},
                               {"beginSessionSeconds", "2.5"},
                               {"processRequestSeconds", "3600"},
                               {"openConnectionError", "0x80040401"},
                               {"beginSessionError", "0x80040408"},
                               {"processRequestError", "0x800706be"},
                               {"companyFileNameError", "0x8004040B"}});

  ASSERT_TRUE(behaviour);
  EXPECT_EQ(behaviour->openConnection.delay, milliseconds(1000));
  EXPECT_EQ(behaviour->beginSession.delay, milliseconds(2500));
  EXPECT_EQ(behaviour->processRequest.delay, milliseconds(3'600'000));
  EXPECT_EQ(behaviour->openConnection.error, 0x80040401);
  EXPECT_EQ(behaviour->beginSession.error, 0x80040408);
  EXPECT_EQ(behaviour->processRequest.error, 0x800706BE);
  EXPECT_EQ(behaviour->companyFileName.error, 0x8004040B);
}

TEST(Behaviour, TakesEmptyValuesForNone) {
  const auto behaviour = Read({{"openConnectionSeconds", ""}, {"openConnectionError", ""}});

  ASSERT_TRUE(behaviour);
  EXPECT_EQ(behaviour->openConnection.error, 0u);
}

TEST(Behaviour, ReadsWhetherQuickBooksDies) {
  EXPECT_TRUE(Read({{"processRequestDies", "1"}})->processRequestDies);
  EXPECT_FALSE(Read({{"processRequestDies", "0"}})->processRequestDies);
  EXPECT_FALSE(Read({{"processRequestDies", ""}})->processRequestDies);
  EXPECT_FALSE(Read({{"processRequestDies", "yes"}}));
}

// A slip would otherwise look like a stand-in that ignores what it is told.
TEST(Behaviour, RefusesWhatItCannotRead) {
  for (const char* seconds : {"x", "-1", "3601", "1e3", "nan", "inf", "1 2"}) {
    EXPECT_FALSE(Read({{"processRequestSeconds", seconds}})) << seconds;
  }
  for (const char* error : {"80040408", "0x", "0x4", "0x800404080", "0x8004040G", "none"}) {
    EXPECT_FALSE(Read({{"processRequestError", error}})) << error;
  }
}

}  // namespace
}  // namespace ostrel::simulator
