// The load program's own side is not measured, so its sockets block and its reads from /proc may be
// slow. A server is started by fork and exec, and between the two only those functions are called
// that POSIX allows there in a process with threads.
#include "bench/System.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace ostrel::bench {
namespace {

// The result of a system call, unless it failed.
template <typename Result>
Result Checked(Result result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
  return result;
}

sockaddr_in OnThisMachine(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

Descriptor NewSocket() {
  return Descriptor(Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
}

Descriptor Connected(std::uint16_t port) {
  Descriptor socket = NewSocket();
  const sockaddr_in address = OnThisMachine(port);
  Checked(connect(socket.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
          "connect");
  return socket;
}

// Only what may be called between fork and exec.
[[noreturn]] void BecomeProgram(char* const* arguments, int output) {
  dup2(output, STDOUT_FILENO);
  execvp(arguments[0], arguments);
  _exit(127);
}

std::string ProcessFile(pid_t process, const char* name) {
  return "/proc/" + std::to_string(process) + "/" + name;
}

}  // namespace

Descriptor::~Descriptor() {
  if (iDescriptor >= 0) close(iDescriptor);
}

Descriptor::Descriptor(Descriptor&& other) noexcept
    : iDescriptor(std::exchange(other.iDescriptor, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(iDescriptor, other.iDescriptor);
  return *this;
}

Connection::Connection(std::uint16_t port) : Connection(Connected(port)) {}

Connection::Connection(Descriptor accepted) : oDescriptor(std::move(accepted)) {
  const int on = 1;
  Checked(setsockopt(oDescriptor.Number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on), "setsockopt");
}

void Connection::Send(std::span<const char> bytes) const {
  while (!bytes.empty()) {
    const auto sent =
        Checked(send(oDescriptor.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL), "send");
    bytes = bytes.subspan(static_cast<std::size_t>(sent));
  }
}

void Connection::AwaitBytes() const {
  char next = 0;
  Checked(recv(oDescriptor.Number(), &next, 1, MSG_PEEK), "recv");
}

std::size_t Connection::Receive(std::span<char> buffer) const {
  return static_cast<std::size_t>(
      Checked(recv(oDescriptor.Number(), buffer.data(), buffer.size(), 0), "recv"));
}

Listener::Listener() : oDescriptor(NewSocket()) {
  sockaddr_in address = OnThisMachine(0);
  socklen_t size = sizeof address;
  auto* const system = reinterpret_cast<sockaddr*>(&address);
  Checked(bind(oDescriptor.Number(), system, size), "bind");
  Checked(listen(oDescriptor.Number(), 1), "listen");
  Checked(getsockname(oDescriptor.Number(), system, &size), "getsockname");
  iPort = ntohs(address.sin_port);
}

Connection Listener::Accept() const {
  return Connection(
      Descriptor(Checked(accept4(oDescriptor.Number(), nullptr, nullptr, SOCK_CLOEXEC), "accept")));
}

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  int ends[2];
  Checked(pipe2(ends, O_CLOEXEC), "pipe");
  oOutput = Descriptor(ends[0]);
  const Descriptor input(ends[1]);
  lProcess = Checked(fork(), "fork");
  if (lProcess == 0) BecomeProgram(arguments.data(), input.Number());
}

ChildProcess::~ChildProcess() {
  kill(lProcess, SIGKILL);
  waitpid(lProcess, nullptr, 0);
}

std::string ChildProcess::ReadLine() const {
  std::string line;
  for (char next = 0; Checked(read(oOutput.Number(), &next, 1), "read") == 1;) {
    if (next == '\n') return line;
    line.push_back(next);
  }
  throw std::runtime_error("the program ended its output with: " + line);
}

Seconds ChildProcess::CpuTime() const {
  clockid_t clock;
  timespec time{};
  if (clock_getcpuclockid(lProcess, &clock) != 0) throw std::runtime_error("no such process");
  Checked(clock_gettime(clock, &time), "clock_gettime");
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::uint64_t ChildProcess::Memory(const std::string& field) const {
  std::ifstream status(ProcessFile(lProcess, "status"));
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(field + ":")) return std::stoull(line.substr(field.size() + 1)) * 1024;
  }
  throw std::runtime_error("no " + field + " of the process");
}

void ChildProcess::ForgetPeak() const {
  if (!(std::ofstream(ProcessFile(lProcess, "clear_refs")) << "5" << std::flush)) {
    throw std::runtime_error("the peak of the process cannot be set back");
  }
}

std::string OwnProgram() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

void RaiseDescriptorLimit() {
  rlimit limit{};
  Checked(getrlimit(RLIMIT_NOFILE, &limit), "getrlimit");
  limit.rlim_cur = limit.rlim_max;
  Checked(setrlimit(RLIMIT_NOFILE, &limit), "setrlimit");
}

}  // namespace ostrel::bench
