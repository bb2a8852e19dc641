// The type library of the request processor's interface. COM carries calls of an interface from
// process to process only when it knows a library that holds it.
#pragma once

#include <ole2.h>

#include <string>

namespace ostrel::simulator {

/// Makes the library's file and registers it for the current user (under Wine: for all). 0 or the
/// failure's HRESULT.
HRESULT RegisterInterfaceLibrary(const std::wstring& path);
/// Removes the registration of that file; harmless when there is none.
void UnregisterInterfaceLibrary(const std::wstring& path);

}  // namespace ostrel::simulator
