// One request at a time, whatever brought it. Whoever works with the QuickBooks session holds the
// pass while it does; everyone else is turned away and comes again.
#pragma once

#include <functional>
#include <optional>
#include <utility>

namespace ostrel {

class RequestGate {
 public:
  class Pass {
   public:
    explicit Pass(RequestGate& gate) : oGate(&gate) {}
    Pass(Pass&& other) noexcept : oGate(std::exchange(other.oGate, nullptr)) {}
    Pass& operator=(Pass&&) = delete;
    ~Pass() {
      if (oGate != nullptr) oGate->Leave();
    }

   private:
    RequestGate* oGate;
  };

  /// Nothing while a request is in work.
  std::optional<Pass> TryEnter() {
    if (bBusy) return std::nullopt;
    bBusy = true;
    return std::optional<Pass>(std::in_place, *this);
  }

  bool IsBusy() const { return bBusy; }

  /// Raised each time a pass has been given back; must not raise.
  std::function<void()> Freed;

 private:
  void Leave() {
    bBusy = false;
    if (Freed) Freed();
  }

  bool bBusy = false;
};

}  // namespace ostrel
