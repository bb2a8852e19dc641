// The addresses of hosts: at once, or off the loop's thread, one after the other.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "platform/Sockets.h"

namespace ostrel::platform {

/// Asks the name service for the first IPv4 address of the host. May take seconds; any thread.
SocketResult<std::uint32_t> FindHostAddress(const std::string& host);

class LookUpThread {
 public:
  /// Runs on the loop.
  using Completion = std::function<void(SocketResult<std::uint32_t> address)>;

  LookUpThread();
  /// Does not wait for a look-up that is under way; its completion is never run.
  ~LookUpThread();
  LookUpThread(const LookUpThread&) = delete;
  LookUpThread& operator=(const LookUpThread&) = delete;

  /// False when too many wait already or there is no thread to be had.
  bool Start(std::string host, Completion completion);

 private:
  struct Shared;
  static void Work(const std::shared_ptr<Shared>& shared) noexcept;

  std::shared_ptr<Shared> oShared;
  bool bRunning = false;
};

}  // namespace ostrel::platform
