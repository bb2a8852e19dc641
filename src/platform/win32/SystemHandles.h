// Owners of what Windows hands out by handle.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace ostrel::platform {

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
  void operator()(HMENU menu) const { DestroyMenu(menu); }
  void operator()(HICON icon) const { DestroyIcon(icon); }
  void operator()(HFONT font) const { DeleteObject(font); }
};

/// Empty for a null pointer only. CreateFileW fails with INVALID_HANDLE_VALUE, which must not come
/// here: closing it closes the process.
template <typename Handle>
using UniqueSystemHandle = std::unique_ptr<std::remove_pointer_t<Handle>, HandleCloser>;

using UniqueHandle = UniqueSystemHandle<HANDLE>;
/// Destroys the menus with it that are attached at that time.
using UniqueMenu = UniqueSystemHandle<HMENU>;
/// Not for icons that were loaded as shared (LR_SHARED), which belong to the system.
using UniqueIcon = UniqueSystemHandle<HICON>;
using UniqueFont = UniqueSystemHandle<HFONT>;

}  // namespace ostrel::platform
