// How QuickBooks' request processor is known to COM. The stand-in registers under the same
// identifiers.
#pragma once

#include <ole2.h>

namespace ostrel {

inline constexpr CLSID kRequestProcessorClass = {
    0x45F5708E, 0x3B43, 0x4FA8, {0xBE, 0x7E, 0xA5, 0xF1, 0x84, 0x92, 0x14, 0xCB}};
inline constexpr IID kRequestProcessorInterface = {
    0x8DB91B17, 0xD5A2, 0x41DB, {0x80, 0xA7, 0xCC, 0x6F, 0x1E, 0x44, 0x9A, 0x05}};

}  // namespace ostrel
