// Requests in files to ostrel-server.
#pragma once

#include "bench/Figures.h"

namespace ostrel::bench {

void MeasureFolders(Figures& figures);

}  // namespace ostrel::bench
