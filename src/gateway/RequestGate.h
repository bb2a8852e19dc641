// One request at a time, whatever brought it. Whoever works with the QuickBooks session holds the
// pass while it does; everyone else is turned away and comes again. The gate outlives its passes.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "gateway/Trace.h"

namespace ostrel {

class RequestGate {
 public:
  class Pass {
   public:
    Pass(Pass&& other) noexcept : oGate(std::exchange(other.oGate, nullptr)) {}
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    ~Pass() {
      if (oGate != nullptr) oGate->Leave();
    }

   private:
    friend class RequestGate;
    explicit Pass(RequestGate& gate) : oGate(&gate) {}

    RequestGate* oGate;
  };

  RequestGate() = default;
  RequestGate(const RequestGate&) = delete;
  RequestGate& operator=(const RequestGate&) = delete;

  /// Nothing while a request is in work.
  std::optional<Pass> TryEnter() {
    if (bBusy) return std::nullopt;
    bBusy = true;
    return Pass(*this);
  }

  bool IsBusy() const { return bBusy; }

  /// Called each time a pass has been given back. What it raises is dropped: passes are given back
  /// while an exception travels as well.
  std::function<void()> Freed;

 private:
  void Leave() noexcept {
    bBusy = false;
    if (!Freed) return;
    try {
      Freed();
    } catch (...) {  // NOLINT(bugprone-empty-catch): see Freed
    }
  }

  bool bBusy = false;
};

/// The status line of a command that is refused.
inline constexpr TextView kRequestInWork = u"A request is in work: try again when it has ended";

/// For the commands of the menu. Nothing while a request is in work, which the status list then
/// tells.
inline std::optional<RequestGate::Pass> EnterOrTell(RequestGate& gate, Trace& trace) {
  auto pass = gate.TryEnter();
  if (!pass) trace.AddStatus(kRequestInWork);
  return pass;
}

}  // namespace ostrel
