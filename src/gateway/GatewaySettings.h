// The part of the settings record that the gateway reads; the shell fills it from the settings
// file. Nobody keeps a copy of a value: an edited settings file and a choice in the menu count from
// the next request on.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

/// A folder has no separator at its end, and lower-case names but for the program's own folder.
struct GatewaySettings {
  /// Full path of the settings file. It decides before the others are read, and stays.
  Text sIniFile;
  /// Company file; empty: the one that is open in QuickBooks. Without control characters.
  Text sQBFileName;
  Text sHistPath;             // folder of history files and of the communication log
  bool bHistory = false;      // a history file for each request
  bool bHistoryEach = false;  // those of one second do not replace each other
  bool bValidateXML = false;  // report on a request that QuickBooks could not parse
  /// Seconds until an idle session is closed; 0: it stays open; below 0: it is closed at once.
  std::int16_t iDisconnectTimeout = 0;
};

}  // namespace ostrel
