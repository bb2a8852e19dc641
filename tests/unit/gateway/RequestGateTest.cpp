#include <gtest/gtest.h>

#include <stdexcept>

#include "gateway/RequestGate.h"

namespace ostrel {
namespace {

TEST(RequestGate, LetsOneInAtATime) {
  RequestGate gate;

  const auto first = gate.TryEnter();

  EXPECT_TRUE(first.has_value());
  EXPECT_FALSE(gate.TryEnter().has_value());
  EXPECT_TRUE(gate.IsBusy());
}

TEST(RequestGate, LetsTheNextInWhenThePassIsGivenBack) {
  RequestGate gate;

  gate.TryEnter().reset();

  EXPECT_FALSE(gate.IsBusy());
  EXPECT_TRUE(gate.TryEnter().has_value());
}

TEST(RequestGate, TellsOnceThatAPassWasGivenBack) {
  RequestGate gate;
  int freed = 0;
  gate.Freed = [&] { ++freed; };

  auto moved = [&] {
    auto pass = gate.TryEnter();
    return std::optional<RequestGate::Pass>(std::move(pass));
  }();
  EXPECT_EQ(freed, 0);

  moved.reset();
  EXPECT_EQ(freed, 1);
}

TEST(RequestGate, IsFreeAlreadyWhenItTells) {
  RequestGate gate;
  bool entered = false;
  gate.Freed = [&] {
    if (!entered) entered = gate.TryEnter().has_value();
  };

  gate.TryEnter().reset();

  EXPECT_TRUE(entered);
}

TEST(RequestGate, DropsWhatItsListenerRaises) {
  RequestGate gate;
  gate.Freed = [] { throw std::runtime_error("listener"); };

  gate.TryEnter().reset();

  EXPECT_FALSE(gate.IsBusy());
}

}  // namespace
}  // namespace ostrel
