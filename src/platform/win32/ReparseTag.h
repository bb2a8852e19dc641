// Which entries of a folder only stand for another name.
#pragma once

#include <windows.h>

namespace ostrel::platform {

/// A symbolic link, a junction and the like. The tag of a file that is kept in the cloud,
/// compressed or stored once for many names has not this bit: it is that file.
inline bool IsLinkTag(DWORD tag) { return IsReparseTagNameSurrogate(tag); }

/// Of what is open; 0 when it is no reparse point.
inline DWORD ReparseTag(HANDLE opened) {
  FILE_ATTRIBUTE_TAG_INFO found{};
  if (!GetFileInformationByHandleEx(opened, FileAttributeTagInfo, &found, sizeof found)) return 0;
  return (found.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? found.ReparseTag : 0;
}

}  // namespace ostrel::platform
