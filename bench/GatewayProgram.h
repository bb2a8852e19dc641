// ostrel-server as its users start it, in a folder of its own with a copy of the sample company.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "bench/System.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::bench {

class GatewayProgram {
 public:
  /// Not started yet: its folders are there and may be filled.
  GatewayProgram();
  /// To be called once; returns when its status lines hold this text.
  void Start(std::string_view readyText);

  const ChildProcess& Process() const { return *oProcess; }
  std::uint16_t Port() const { return iPort; }
  const ScratchFolder& ProcessFolder() const { return oProcessFolder; }
  const ScratchFolder& ResponseFolder() const { return oResponseFolder; }

 private:
  ScratchFolder oFolder, oProcessFolder, oResponseFolder;
  std::uint16_t iPort;
  std::optional<ChildProcess> oProcess;
};

}  // namespace ostrel::bench
