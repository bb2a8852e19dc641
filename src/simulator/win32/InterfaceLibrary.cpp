#include "simulator/win32/InterfaceLibrary.h"

#include <utility>

#include "quickbooks/win32/ComRequestProcessor.h"

// The headers at hand lack these two.
extern "C" {
WINOLEAUTAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
WINOLEAUTAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor, LCID locale,
                                      SYSKIND system);
}

namespace ostrel::simulator {
namespace {

constexpr GUID kLibrary = {
    0xC6FD8C4E, 0x1B5A, 0x4C7E, {0x9A, 0x3D, 0x5E, 0x21, 0x70, 0xB4, 0x8F, 0x16}};
constexpr WORD kMajorVersion = 1;
constexpr WORD kMinorVersion = 0;

/// A COM pointer that is released.
template <typename Interface>
class Pointer {
 public:
  Pointer() = default;
  ~Pointer() {
    if (oObject != nullptr) oObject->Release();
  }
  Pointer(const Pointer&) = delete;
  Pointer& operator=(const Pointer&) = delete;

  Interface** Put() { return &oObject; }
  Interface* operator->() const { return oObject; }
  Interface* Get() const { return oObject; }

 private:
  Interface* oObject = nullptr;
};

// Steps up to the first that fails.
class Steps {
 public:
  template <typename Step>
  Steps& Then(Step step) {
    if (SUCCEEDED(lResult)) lResult = step();
    return *this;
  }
  HRESULT Result() const { return lResult; }

 private:
  HRESULT lResult = S_OK;
};

HRESULT DeriveFromDispatch(ICreateTypeInfo& type) {
  Pointer<ITypeLib> standard;
  Pointer<ITypeInfo> dispatch;
  HREFTYPE reference = 0;
  return Steps()
      .Then([&] { return LoadTypeLib(L"stdole2.tlb", standard.Put()); })
      .Then([&] { return standard->GetTypeInfoOfGuid(IID_IDispatch, dispatch.Put()); })
      .Then([&] { return type.AddRefTypeInfo(dispatch.Get(), &reference); })
      .Then([&] { return type.AddImplType(0, reference); })
      .Result();
}

// The library needs no methods: the object itself knows their names.
HRESULT AddInterface(ICreateTypeLib2& library) {
  static wchar_t name[] = L"IRequestProcessor";
  Pointer<ICreateTypeInfo> type;
  return Steps()
      .Then([&] { return library.CreateTypeInfo(name, TKIND_DISPATCH, type.Put()); })
      .Then([&] { return type->SetGuid(kRequestProcessorInterface); })
      .Then([&] { return type->SetTypeFlags(TYPEFLAG_FDISPATCHABLE); })
      .Then([&] { return DeriveFromDispatch(*type.Get()); })
      .Then([&] { return type->LayOut(); })
      .Result();
}

HRESULT MakeLibrary(const std::wstring& path) {
  static wchar_t name[] = L"OstrelSimulator";
  Pointer<ICreateTypeLib2> library;
  return Steps()
      .Then([&] { return CreateTypeLib2(SYS_WIN32, path.c_str(), library.Put()); })
      .Then([&] { return library->SetGuid(kLibrary); })
      .Then([&] { return library->SetVersion(kMajorVersion, kMinorVersion); })
      .Then([&] { return library->SetLcid(LOCALE_NEUTRAL); })
      .Then([&] { return library->SetName(name); })
      .Then([&] { return AddInterface(*library.Get()); })
      .Then([&] { return library->SaveAllChanges(); })
      .Result();
}

}  // namespace

HRESULT RegisterInterfaceLibrary(const std::wstring& path) {
  Pointer<ITypeLib> library;
  std::wstring name = path;
  return Steps()
      .Then([&] { return MakeLibrary(path); })
      .Then([&] { return LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()); })
      .Then([&] { return RegisterTypeLibForUser(library.Get(), name.data(), nullptr); })
      .Result();
}

void UnregisterInterfaceLibrary(const std::wstring& path) {
  UnRegisterTypeLibForUser(kLibrary, kMajorVersion, kMinorVersion, LOCALE_NEUTRAL, SYS_WIN32);
  DeleteFileW(path.c_str());
}

}  // namespace ostrel::simulator
