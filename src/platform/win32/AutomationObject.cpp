// Automation calls methods by name: the name is looked up in the object, then called with VARIANTs,
// whose order is from the last argument to the first. A failure may come with an exception that the
// object describes; its texts are the caller's to free, and its code may be missing.
#include "platform/win32/AutomationObject.h"

#include <new>
#include <vector>

namespace ostrel::platform {
namespace {

Text TextOf(BSTR text) {
  if (!text) return {};
  return Text(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
}

// The texts of an exception, freed with it.
struct ExceptionInfo : EXCEPINFO {
  ExceptionInfo() : EXCEPINFO{} {}
  ~ExceptionInfo() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;
};

// An exception that carries no code of its own, or one that is no failure, still is one.
HRESULT CodeOf(const ExceptionInfo& exception) {
  if (exception.scode < 0) return exception.scode;
  constexpr HRESULT kAutomationError = static_cast<HRESULT>(0x80040000);
  return exception.wCode != 0 ? kAutomationError | exception.wCode : DISP_E_EXCEPTION;
}

}  // namespace

Variant::Variant(TextView text) : Variant() {
  oValue.bstrVal = SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()),
                                     static_cast<UINT>(text.size()));
  if (!oValue.bstrVal) throw std::bad_alloc();
  oValue.vt = VT_BSTR;
}

Variant::Variant(std::int32_t value) : Variant() {
  oValue.vt = VT_I4;
  oValue.lVal = value;
}

Variant::Variant(IDispatch* object) : Variant() {
  oValue.vt = VT_DISPATCH;
  oValue.pdispVal = object;
  if (object) object->AddRef();
}

Text Variant::AsText() const { return oValue.vt == VT_BSTR ? TextOf(oValue.bstrVal) : Text(); }

std::int32_t Variant::AsNumber() const { return oValue.vt == VT_I4 ? oValue.lVal : 0; }

IDispatch* Variant::AsObject() const {
  return oValue.vt == VT_DISPATCH ? oValue.pdispVal : nullptr;
}

AutomationObject AutomationObject::Create(const wchar_t* progId) {
  AutomationObject created;
  CLSID classId;
  if (FAILED(CLSIDFromProgID(progId, &classId))) return created;
  void* object = nullptr;
  if (SUCCEEDED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                 IID_IDispatch, &object))) {
    created.oObject = static_cast<IDispatch*>(object);
  }
  return created;
}

HRESULT AutomationObject::Create(const CLSID& classId, const IID& interfaceId,
                                 AutomationObject& object) {
  void* created = nullptr;
  const HRESULT result = CoCreateInstance(
      classId, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, interfaceId, &created);
  if (FAILED(result)) return result;
  AutomationObject taken;
  taken.oObject = static_cast<IDispatch*>(created);
  object = std::move(taken);
  return S_OK;
}

AutomationObject::AutomationObject(IDispatch* object) : oObject(object) {
  if (oObject) oObject->AddRef();
}

AutomationObject::~AutomationObject() {
  if (oObject) oObject->Release();
}

Outcome AutomationObject::Call(const wchar_t* method,
                               std::initializer_list<const Variant*> arguments) {
  return Invoke(method, DISPATCH_METHOD, arguments);
}

Outcome AutomationObject::Read(const wchar_t* property) {
  return Invoke(property, DISPATCH_PROPERTYGET, {});
}

Outcome AutomationObject::Write(const wchar_t* property, const Variant& value) {
  return Invoke(property, DISPATCH_PROPERTYPUT, {&value});
}

Outcome AutomationObject::Refer(const wchar_t* property, const AutomationObject& object) {
  const Variant reference(object.oObject);
  return Invoke(property, DISPATCH_PROPERTYPUTREF, {&reference});
}

HRESULT AutomationObject::Find(const wchar_t* name, DISPID& member) {
  const auto known = oMembers.find(name);
  if (known != oMembers.end()) {
    member = known->second;
    return S_OK;
  }
  auto* memberName = const_cast<wchar_t*>(name);  // only read; the interface is older than const
  const HRESULT found =
      oObject->GetIDsOfNames(IID_NULL, &memberName, 1, LOCALE_SYSTEM_DEFAULT, &member);
  if (SUCCEEDED(found)) oMembers.emplace(name, member);
  return found;
}

Outcome AutomationObject::Invoke(const wchar_t* name, WORD kind,
                                 std::initializer_list<const Variant*> arguments) {
  if (!oObject) return {E_POINTER};
  DISPID member = 0;
  if (const HRESULT found = Find(name, member); FAILED(found)) return {found};

  // Arguments stand from the last to the first; they stay the caller's.
  std::vector<VARIANT> values;
  for (const Variant* argument : arguments) values.insert(values.begin(), argument->Raw());
  DISPID putName = DISPID_PROPERTYPUT;
  const bool put = kind == DISPATCH_PROPERTYPUT || kind == DISPATCH_PROPERTYPUTREF;
  DISPPARAMS parameters = {values.data(), put ? &putName : nullptr,
                           static_cast<UINT>(values.size()), put ? 1u : 0u};
  Outcome outcome;
  ExceptionInfo exception;
  outcome.number = oObject->Invoke(member, IID_NULL, LOCALE_SYSTEM_DEFAULT, kind, &parameters,
                                   outcome.value.Raw(), &exception, nullptr);
  if (outcome.number == DISP_E_EXCEPTION) {
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    outcome.number = CodeOf(exception);
    outcome.described = true;
    outcome.description = TextOf(exception.bstrDescription);
  }
  return outcome;
}

}  // namespace ostrel::platform
