// A thread's message filter that tries calls again which a busy server rejects: QuickBooks does so
// while it shows a dialog box.
#pragma once

#include <ole2.h>

namespace ostrel {

/// The filter of the thread that made it, whose apartment it must not outlive.
class BusyServerFilter final : public IMessageFilter {
 public:
  BusyServerFilter();
  ~BusyServerFilter();
  BusyServerFilter(const BusyServerFilter&) = delete;
  BusyServerFilter& operator=(const BusyServerFilter&) = delete;

  // COM's references do not keep it: it has taken back what it gave COM when it ends.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;

  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD callType, HTASK caller, DWORD ticks,
                                             LPINTERFACEINFO call) override;
  /// Milliseconds until the next attempt, more from one to the next up to 1000; after 60 seconds
  /// the call fails with the number of the rejection.
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK callee, DWORD elapsedMilliseconds,
                                            DWORD rejection) override;
  DWORD STDMETHODCALLTYPE MessagePending(HTASK callee, DWORD elapsedMilliseconds,
                                         DWORD pendingType) override;
};

}  // namespace ostrel
