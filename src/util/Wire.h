// The agreement between the gateway and its clients: how requests and responses are framed over TCP
// and named in folders, and the numbers of the errors. Both sides include it, so that neither can
// change alone.
#pragma once

#include <cstdint>
#include <string_view>

#include "util/Text.h"

namespace ostrel {

/// The MultiValue field separator: a line break on the wire and in log buffers.
inline constexpr char16_t kAttributeMark = 254;
/// Ends every request from a client and every response to it.
inline constexpr char16_t kEndOfDataMark = 31;
/// The marks as texts of one character, and as the bytes that travel: they are the same in every
/// code page (util/CodePage.h).
inline constexpr TextView kAttributeMarkText(&kAttributeMark, 1);
inline constexpr TextView kEndOfDataMarkText(&kEndOfDataMark, 1);
inline constexpr char kAttributeMarkByte = static_cast<char>(kAttributeMark);
inline constexpr char kEndOfDataByte = static_cast<char>(kEndOfDataMark);

/// An error over TCP: this, the number, then an attribute mark and the message, or nothing.
inline constexpr TextView kErrorFramePrefix = u"ERROR: ";
/// An error in a response file: this and the number in the first line, the message in the second.
inline constexpr TextView kErrorFilePrefix = u"ERROR ";

/// Of request files, in small or capital letters. The response file has the name of its request.
inline constexpr TextView kRequestExtension = u".osl";
inline constexpr TextView kRequestPattern = u"*.osl";

inline constexpr std::int32_t kDefaultPort = 4999;
inline constexpr TextView kDefaultPortText = u"4999";

/// The program's own error numbers. Each may be told to a client; QuickBooks' own numbers, which
/// begin at 1024, are in quickbooks/ErrorNumbers.h.
struct ErrorNumber {
  enum : std::int32_t {
    kCannotUseCompanyFile = 2,  // QuickBooks failed with an HRESULT that does not reduce
    kQuickBooksSdkMissing = 3,  // there is no request processor
    kInvalidProcedureCall = 5,
    kOverflow = 6,
    kOutOfMemory = 7,
    kSubscriptOutOfRange = 9,
    kTypeMismatch = 13,
    kRequestTooLong = 14,
    kInternalError = 51,
    kBadFileName = 52,  // the name of a company file holds control characters
    kFileNotFound = 53,
    kResponseNotWritten = 57,  // the request was carried out
    kGatewayEnded = 58,        // while the request was in work
    kPathFileAccess = 75,      // a folder cannot be created, or the settings file cannot be read
    kObjectNotSet = 91,
    kStillLoading = 99,  // QuickBooks is opening the company file; the response follows
  };
};

}  // namespace ostrel
