// The stand-in's request processor as a COM object: its six operations by name. One object is one
// client's connection.
#pragma once

#include <ole2.h>

#include <functional>
#include <memory>

#include "quickbooks/RequestProcessor.h"

namespace ostrel::simulator {

/// The server runs on while what has called this has not let go.
void KeepRunning();
void LetGo();

class RequestProcessorObject final : public IDispatch {
 public:
  using Listener = std::function<void()>;

  /// Keeps the server running while it lives. `called` is told of every call.
  RequestProcessorObject(std::unique_ptr<RequestProcessor> processor, Listener called);

  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  /// Names of members only, not of their arguments; in any case.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* members) override;
  /// Failures of the request processor are exceptions with their number, source and description.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) override;

 private:
  ~RequestProcessorObject();
  HRESULT Run(DISPID member, const DISPPARAMS& arguments, VARIANT* result, UINT* wrongArgument);

  ULONG iReferences = 1;
  std::unique_ptr<RequestProcessor> oProcessor;
  Listener oCalled;
};

}  // namespace ostrel::simulator
