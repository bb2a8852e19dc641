// The facts that Windows keeps about a file: its times as the program's points in time, and whether
// it only stands for another name.
#pragma once

#include <windows.h>

#include <cstdint>

#include "platform/Clock.h"

namespace ostrel::platform {

/// A FILETIME counts from 1 January 1601 UTC; what is finer than the program's clock is cut.
TimePoint FromFileTime(const FILETIME& time);
FILETIME ToFileTime(TimePoint time);
/// The time in units of 100 ns, which a FILETIME counts.
std::int64_t TicksOf(const FILETIME& time);

/// True for the tag of a symbolic link, a junction and the like. The tag of a file that is kept in
/// the cloud, compressed or stored once for many names does not have this bit: it is that file.
inline bool IsLinkTag(DWORD tag) { return IsReparseTagNameSurrogate(tag); }
/// The tag of an open file; 0 when it is no reparse point. Any access will do, none included: every
/// handle may read attributes.
inline DWORD ReparseTag(HANDLE opened) {
  FILE_ATTRIBUTE_TAG_INFO found{};
  if (!GetFileInformationByHandleEx(opened, FileAttributeTagInfo, &found, sizeof found)) return 0;
  return (found.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? found.ReparseTag : 0;
}

}  // namespace ostrel::platform
