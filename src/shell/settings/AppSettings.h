// The settings record: everything that the settings file decides. The main form owns it,
// SettingsFile fills it, everyone else reads it.
#pragma once

#include <cstdint>

#include "gateway/GatewaySettings.h"
#include "transports/TransportSettings.h"
#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

/// The record is filled with the defaults of all keys from the start on. A key that could not be
/// read keeps its value, and so do those after it in the table of SettingsFile.
struct AppSettings : GatewaySettings, TransportSettings {
  Text sStatusPath;  // folder of status.txt, no separator at its end
  cFileIO oCommLog;  // bound to the communication log, closed between lines
  /// Database flavour: 0 none, 1 D3/Linux, 2 D3/NT, 3 UniVerse, 4 OpenInsight. A flavour decides
  /// which transport is wanted; 0 and any other number leave that to the two below.
  std::int32_t lCommType = 0;
  bool bFolderWatch = false;   // the folder transport is wanted
  bool bSocketServer = false;  // the socket transport is wanted
};

}  // namespace ostrel
