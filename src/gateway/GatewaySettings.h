// The part of the settings record that the gateway reads; the shell fills it from the settings
// file.
#pragma once

#include <cstdint>

#include "util/Text.h"

namespace ostrel {

struct GatewaySettings {
  Text sIniFile;                        // full path of the settings file
  Text sQBFileName;                     // company file; empty: the one open in QuickBooks
  Text sHistPath;                       // folder of history files, no separator at its end
  bool bHistory = false;                // a history file for each request
  bool bHistoryEach = false;            // those of one second do not replace each other
  bool bValidateXML = false;            // report on a request that QuickBooks could not parse
  std::int16_t iDisconnectTimeout = 0;  // seconds; 0: an idle session stays open
};

}  // namespace ostrel
