#include "simulator/values/LongWork.h"

#include <chrono>

#include "simulator/values/Status.h"

namespace ostrel::simulator {
namespace {

using std::chrono::steady_clock;

// A person takes a delay of twice this length for none.
constexpr std::chrono::milliseconds kTurn(50);

LongWork* oCurrent = nullptr;
steady_clock::time_point oNextTurn;
unsigned lLightSteps = 0;

}  // namespace

void Breathe() {
  if (oCurrent) oCurrent->Breathe();
}

void BreatheLightly() {
  constexpr unsigned kStepsInABreath = 64;
  if (++lLightSteps % kStepsInABreath == 0) Breathe();
}

void RequireNoLongWork() {
  if (oCurrent) Fail(Hresult::kCallRejected);
}

LongWork::LongWork(const std::function<void()>& dispatch, const bool& givenUp)
    : fDispatch(dispatch), bGivenUp(givenUp) {
  RequireNoLongWork();
  oCurrent = this;
  oNextTurn = steady_clock::now() + kTurn;
}

LongWork::~LongWork() { oCurrent = nullptr; }

void LongWork::Breathe() {
  if (steady_clock::now() >= oNextTurn) {
    fDispatch();
    oNextTurn = steady_clock::now() + kTurn;
  }
  if (bGivenUp) FailAsGivenUp();
}

}  // namespace ostrel::simulator
