// The stand-in's request processor as an automation object: calls come by name (IDispatch), and
// their arguments from the last to the first in whatever types the client has. Clients are served
// on one thread; a call that dispatches events while it computes must let no other client's call
// in, which could change the company under it.
#include "simulator/win32/RequestProcessorObject.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/win32/AutomationObject.h"
#include "quickbooks/win32/ComRequestProcessor.h"
#include "simulator/win32/Operations.h"

namespace ostrel::simulator {
namespace {

using platform::Variant;

constexpr std::size_t kMostArguments = 2;

// A call's arguments in the operation's types. Automation hands them over from the last to the
// first, in whatever types its client has.
class Arguments {
 public:
  HRESULT Take(const DISPPARAMS& given, std::span<const VARTYPE> types, UINT* wrongArgument) {
    if (given.cNamedArgs != 0) return DISP_E_NONAMEDARGS;
    if (given.cArgs != types.size()) return DISP_E_BADPARAMCOUNT;
    for (std::size_t i = 0; i < types.size(); ++i) {
      const auto place = static_cast<UINT>(types.size() - 1 - i);
      if (const HRESULT result = TakeOne(i, given.rgvarg[place], types[i]); FAILED(result)) {
        if (wrongArgument != nullptr) *wrongArgument = place;
        return result;
      }
    }
    return S_OK;
  }

  Values Get(std::size_t count) const { return Values(oTaken).first(count); }

 private:
  // A value that has the type already is not copied: a request may be long.
  HRESULT TakeOne(std::size_t index, VARIANT& value, VARTYPE type) {
    oTaken[index] = &value;
    if (value.vt == type) return S_OK;
    oTaken[index] = oConverted[index].Raw();
    return VariantChangeType(oConverted[index].Raw(), &value, 0, type);
  }

  std::array<Variant, kMostArguments> oConverted;
  std::array<const VARIANT*, kMostArguments> oTaken{};
};

BSTR NewBstr(TextView text) {
  const BSTR made = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                      static_cast<UINT>(text.size()));
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

HRESULT ReturnText(const Text& text, VARIANT* result) {
  if (result == nullptr) return S_OK;
  result->bstrVal = NewBstr(text);
  result->vt = VT_BSTR;
  return S_OK;
}

HRESULT FailWith(const RequestProcessorError& error, EXCEPINFO* exception) {
  if (exception == nullptr) return error.Number;
  *exception = {};
  exception->scode = error.Number;
  exception->bstrSource = NewBstr(u"OstrelSimulator.RequestProcessor");
  exception->bstrDescription = NewBstr(error.Description);
  return DISP_E_EXCEPTION;
}

}  // namespace

void KeepRunning() { CoAddRefServerProcess(); }

// COM offers the class no more when the last has let go.
void LetGo() {
  if (CoReleaseServerProcess() == 0) platform::QuitEventLoop(0);
}

RequestProcessorObject::RequestProcessorObject(std::unique_ptr<RequestProcessor> processor,
                                               Listener called)
    : oProcessor(std::move(processor)), oCalled(std::move(called)) {
  KeepRunning();
}

RequestProcessorObject::~RequestProcessorObject() { LetGo(); }

ULONG RequestProcessorObject::AddRef() { return ++iReferences; }

ULONG RequestProcessorObject::Release() {
  const ULONG left = --iReferences;
  if (left == 0) delete this;
  return left;
}

HRESULT RequestProcessorObject::QueryInterface(REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IDispatch ||
                     interfaceId == kRequestProcessorInterface;
  *object = known ? this : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT RequestProcessorObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT RequestProcessorObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT RequestProcessorObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                              DISPID* members) {
  if (names == nullptr || members == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  std::fill_n(members, count, DISPID_UNKNOWN);
  try {
    const Text wanted = LowerCase(reinterpret_cast<const char16_t*>(names[0]));
    const auto operations = Operations();
    const auto found = std::ranges::find_if(operations, [&](const Operation& operation) {
      return LowerCase(operation.name) == wanted;
    });
    if (found == operations.end()) return DISP_E_UNKNOWNNAME;
    members[0] = static_cast<DISPID>(found - operations.begin()) + 1;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT RequestProcessorObject::Invoke(DISPID member, REFIID, LCID, WORD kind,
                                       DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                       UINT* wrongArgument) {
  if (arguments == nullptr) return E_POINTER;
  if ((kind & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  // The client may let go, or die, while a company file delays its call.
  AddRef();
  HRESULT outcome = E_OUTOFMEMORY;
  try {
    oCalled();
    try {
      outcome = Run(member, *arguments, result, wrongArgument);
    } catch (const RequestProcessorError& error) {
      outcome = FailWith(error, exception);
    }
  } catch (const std::bad_alloc&) {
    outcome = E_OUTOFMEMORY;
  } catch (...) {
    outcome = E_UNEXPECTED;
  }
  Release();
  return outcome;
}

HRESULT RequestProcessorObject::Run(DISPID member, const DISPPARAMS& arguments, VARIANT* result,
                                    UINT* wrongArgument) {
  const auto index = static_cast<std::size_t>(member) - 1;
  if (index >= Operations().size()) return DISP_E_MEMBERNOTFOUND;
  const Operation& operation = Operations()[index];
  Arguments taken;
  const HRESULT fit = taken.Take(arguments, operation.arguments, wrongArgument);
  if (FAILED(fit)) return fit;
  const Text response = operation.run(*oProcessor, taken.Get(operation.arguments.size()));
  return operation.returnsText ? ReturnText(response, result) : S_OK;
}

}  // namespace ostrel::simulator
