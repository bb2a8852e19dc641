#include "quickbooks/win32/BusyServerFilter.h"

#include <algorithm>

namespace ostrel {
namespace {

constexpr DWORD kLimit = 60'000;
constexpr DWORD kShortestPause = 100;  // what is less, COM takes for none
constexpr DWORD kLongestPause = 1000;
constexpr DWORD kFail = static_cast<DWORD>(-1);

}  // namespace

BusyServerFilter::BusyServerFilter() { CoRegisterMessageFilter(this, nullptr); }

BusyServerFilter::~BusyServerFilter() { CoRegisterMessageFilter(nullptr, nullptr); }

HRESULT BusyServerFilter::QueryInterface(REFIID interfaceId, void** object) {
  const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IMessageFilter;
  *object = known ? this : nullptr;
  return known ? S_OK : E_NOINTERFACE;
}

DWORD BusyServerFilter::HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) {
  return SERVERCALL_ISHANDLED;
}

DWORD BusyServerFilter::RetryRejectedCall(HTASK, DWORD elapsedMilliseconds, DWORD) {
  if (elapsedMilliseconds >= kLimit) return kFail;
  return std::clamp(elapsedMilliseconds / 2, kShortestPause, kLongestPause);
}

DWORD BusyServerFilter::MessagePending(HTASK, DWORD, DWORD) { return PENDINGMSG_WAITDEFPROCESS; }

}  // namespace ostrel
