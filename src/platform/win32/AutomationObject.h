// An object of another program or library, used by the names of its members (IDispatch): the order
// of its virtual table does not matter. To be used on the thread that created it.
#pragma once

#include <ole2.h>

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <string_view>
#include <utility>

#include "util/Text.h"

namespace ostrel::platform {

/// Enters the thread's single-threaded apartment for as long as it lives; a thread that is in an
/// apartment already stays in its own.
class Apartment {
 public:
  Apartment() : lResult(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~Apartment() {
    if (SUCCEEDED(lResult)) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  HRESULT lResult;
};

/// A VARIANT that frees what it holds.
class Variant {
 public:
  Variant() { VariantInit(&oValue); }
  /// Raises std::bad_alloc.
  explicit Variant(TextView text);
  /// Takes nothing but a boolean: a literal text would turn into one too.
  explicit Variant(std::same_as<bool> auto value) : Variant() {
    oValue.vt = VT_BOOL;
    oValue.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit Variant(std::int32_t value);
  explicit Variant(IDispatch* object);
  ~Variant() { VariantClear(&oValue); }
  Variant(Variant&& other) noexcept : Variant() { std::swap(oValue, other.oValue); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(oValue, other.oValue);
    return *this;
  }

  VARIANT* Raw() { return &oValue; }
  const VARIANT& Raw() const { return oValue; }
  /// Empty, 0 or null when the value cannot be taken for one.
  Text AsText() const;
  std::int32_t AsNumber() const;
  IDispatch* AsObject() const;

 private:
  VARIANT oValue;
};

/// The outcome of a call: 0 or a failure's HRESULT with its description.
struct Outcome {
  HRESULT number = S_OK;
  Text description = {};
  Variant value = {};
  bool described = false;  // the failure came with a description, if perhaps an empty one

  bool Failed() const { return number < 0; }
};

class AutomationObject {
 public:
  /// No object when the class is not installed.
  static AutomationObject Create(const wchar_t* progId);

  /// The class's object seen through this interface, whose methods must begin with IDispatch's; 0,
  /// or why there is none (then `object` stays what it was).
  static HRESULT Create(const CLSID& classId, const IID& interfaceId, AutomationObject& object);

  AutomationObject() = default;
  /// Shares the object.
  explicit AutomationObject(IDispatch* object);
  ~AutomationObject();
  AutomationObject(AutomationObject&& other) noexcept
      : oObject(std::exchange(other.oObject, nullptr)), oMembers(std::move(other.oMembers)) {}
  AutomationObject& operator=(AutomationObject&& other) noexcept {
    std::swap(oObject, other.oObject);
    std::swap(oMembers, other.oMembers);
    return *this;
  }

  explicit operator bool() const { return oObject != nullptr; }
  IDispatch* Get() const { return oObject; }

  // Names of members are literals: the object keeps them.

  Outcome Call(const wchar_t* method, std::initializer_list<const Variant*> arguments = {});
  Outcome Read(const wchar_t* property);
  Outcome Write(const wchar_t* property, const Variant& value);
  /// Makes the property refer to the object.
  Outcome Refer(const wchar_t* property, const AutomationObject& object);

 private:
  HRESULT Find(const wchar_t* name, DISPID& member);
  Outcome Invoke(const wchar_t* name, WORD kind, std::initializer_list<const Variant*> arguments);

  IDispatch* oObject = nullptr;
  std::map<std::wstring_view, DISPID> oMembers;  // those used so far
};

}  // namespace ostrel::platform
