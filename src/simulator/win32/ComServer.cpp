#include "simulator/win32/ComServer.h"

#include <chrono>
#include <new>

#include "platform/EventLoop.h"
#include "platform/win32/AutomationObject.h"
#include "quickbooks/win32/ComRequestProcessor.h"
#include "simulator/SimulatedRequestProcessor.h"
#include "simulator/win32/RequestProcessorObject.h"
#include "simulator/win32/StopWindow.h"

namespace ostrel::simulator {
namespace {

// Wine does not tell a server that a client has died. What no client has called for so long is left
// over from one; a client with a session that it does not use for half a day finds QuickBooks gone.
constexpr std::chrono::hours kIdleLimit(12);

class IdleLimit {
 public:
  IdleLimit() { oTimer.SetEnabled(true); }
  void Restart() {
    oTimer.SetEnabled(false);
    oTimer.SetEnabled(true);
  }

 private:
  platform::Timer oTimer{kIdleLimit, [] { platform::QuitEventLoop(0); }};
};

// Lives as long as the server: COM's references do not keep it.
class Factory final : public IClassFactory {
 public:
  explicit Factory(IdleLimit& idleLimit) : oIdleLimit(idleLimit) {}

  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IClassFactory;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId,
                                           void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    lock ? KeepRunning() : LetGo();
    return S_OK;
  }

 private:
  IdleLimit& oIdleLimit;
};

HRESULT Factory::CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) {
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  try {
    oIdleLimit.Restart();
    auto* const made = new RequestProcessorObject(MakeSimulatedRequestProcessor(),
                                                  [this] { oIdleLimit.Restart(); });
    const HRESULT result = made->QueryInterface(interfaceId, object);
    made->Release();
    return result;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

// The class as COM knows it while this lives.
class OfferedClass {
 public:
  explicit OfferedClass(IClassFactory& factory)
      : lResult(CoRegisterClassObject(kRequestProcessorClass, &factory, CLSCTX_LOCAL_SERVER,
                                      REGCLS_MULTIPLEUSE, &lCookie)) {}
  ~OfferedClass() { Revoke(); }
  OfferedClass(const OfferedClass&) = delete;
  OfferedClass& operator=(const OfferedClass&) = delete;

  bool Failed() const { return FAILED(lResult); }
  void Revoke() {
    if (SUCCEEDED(lResult)) CoRevokeClassObject(lCookie);
    lResult = E_FAIL;
  }

 private:
  DWORD lCookie = 0;
  HRESULT lResult;
};

// Ends like a crash, but offers the class no more, so that COM can start it again: Wine would not.
void Die(OfferedClass& offered) {
  offered.Revoke();
  TerminateProcess(GetCurrentProcess(), 3);
}

}  // namespace

int ServeClients() {
  const platform::Apartment apartment;
  IdleLimit idleLimit;
  Factory factory(idleLimit);
  OfferedClass offered(factory);
  if (offered.Failed()) return 1;
  const auto die = [&offered] { Die(offered); };
  SetSimulatedDeath(die);
  SetSimulatedDispatching([] {});
  const StopWindow stopWindow(die);
  return platform::RunEventLoop();
}

}  // namespace ostrel::simulator
