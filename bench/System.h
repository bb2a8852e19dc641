// The system as the load program uses it: processes and their use of memory and time, and plain
// blocking TCP on this machine; the implementation is in posix/. Members raise std::system_error,
// or std::runtime_error where the system has no number.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "bench/Figures.h"

namespace ostrel::bench {

/// A file descriptor of ours.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : iDescriptor(descriptor) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;

  int Number() const { return iDescriptor; }

 private:
  int iDescriptor;
};

/// A blocking connection. What is sent leaves at once, however little it is.
class Connection {
 public:
  explicit Connection(std::uint16_t port);
  explicit Connection(Descriptor accepted);

  void Send(std::span<const char> bytes) const;
  /// Returns when there is something to receive, and leaves it there.
  void AwaitBytes() const;
  /// At least one byte; 0 when the peer has finished.
  std::size_t Receive(std::span<char> buffer) const;

 private:
  Descriptor oDescriptor;
};

/// Listens on a free port.
class Listener {
 public:
  Listener();
  std::uint16_t Port() const { return iPort; }
  Connection Accept() const;

 private:
  Descriptor oDescriptor;
  std::uint16_t iPort = 0;
};

/// A program with its standard output in a pipe to us. Killed at the latest with the object.
class ChildProcess {
 public:
  /// The program is looked up as a shell would.
  explicit ChildProcess(const std::vector<std::string>& command);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The next line of its output; raises when that has ended.
  std::string ReadLine() const;

  /// User and system time so far.
  Seconds CpuTime() const;
  /// In bytes.
  std::uint64_t ResidentMemory() const { return Memory("VmRSS"); }
  /// The most since ForgetPeak, in bytes.
  std::uint64_t PeakMemory() const { return Memory("VmHWM"); }
  void ForgetPeak() const;

 private:
  std::uint64_t Memory(const std::string& field) const;

  std::int32_t lProcess = -1;
  Descriptor oOutput;
};

/// Full path of the program that runs.
std::string OwnProgram();

/// As many open descriptors as the system lets us have.
void RaiseDescriptorLimit();

}  // namespace ostrel::bench
