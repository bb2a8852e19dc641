// The settings record: everything that the settings file decides. The main form owns it,
// SettingsFile fills it, everyone else reads it.
#pragma once

#include <cstdint>

#include "gateway/GatewaySettings.h"
#include "transports/TransportSettings.h"
#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

struct AppSettings : GatewaySettings, TransportSettings {
  Text sStatusPath;            // folder of status.txt, no separator at its end
  cFileIO oCommLog;            // bound to the communication log, closed between lines
  std::int32_t lCommType = 0;  // database flavour: 0 none, 1 D3/Linux, 2 D3/NT, 3 UniVerse,
                               // 4 OpenInsight
  bool bFolderWatch = false;   // the folder transport is wanted
  bool bSocketServer = false;  // the socket transport is wanted
};

}  // namespace ostrel
