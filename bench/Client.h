// A client of the gateway, as a database application is one.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/System.h"
#include "util/Wire.h"

namespace ostrel::bench {

class Client {
 public:
  explicit Client(std::uint16_t port) : oConnection(port) {}

  void Send(std::string_view bytes) const { oConnection.Send(bytes); }
  void SendRequest(std::string_view text) const { Send(std::string(text) + kEndOfDataByte); }

  void AwaitBeginOfResponse() const { oConnection.AwaitBytes(); }

  /// Reads up to the end-of-data mark; how many bytes that were, the mark included.
  std::size_t AwaitResponse() {
    std::size_t total = 0;
    for (std::size_t received;; total += received) {
      received = oConnection.Receive(Buffer());
      if (received == 0) throw std::runtime_error("the gateway has closed the connection");
      if (Buffer()[received - 1] == kEndOfDataByte) return total + received;
    }
  }

  std::size_t Ask(std::string_view text) {
    SendRequest(text);
    return AwaitResponse();
  }

 private:
  // One for all clients of a thread: there may be ten thousand of them.
  static std::vector<char>& Buffer() {
    thread_local std::vector<char> buffer(256 * 1024);
    return buffer;
  }

  Connection oConnection;
};

}  // namespace ostrel::bench
