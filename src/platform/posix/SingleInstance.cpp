// A socket that is bound to a name in the system's abstract name space: there is no file, so nobody
// can plant, remove or forbid one, and all users of the machine share the name. The system takes
// the name back with the process.
#include "platform/SingleInstance.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace ostrel::platform {
namespace {

class NameLock : public InstanceLock {
 public:
  /// -1: holds nothing.
  explicit NameLock(int descriptor) : iDescriptor(descriptor) {}
  ~NameLock() override {
    if (iDescriptor >= 0) close(iDescriptor);
  }
  NameLock(const NameLock&) = delete;
  NameLock& operator=(const NameLock&) = delete;

 private:
  int iDescriptor;
};

// FNV-1a: the same in every process and every build.
std::uint64_t Fingerprint(std::string_view bytes) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  return hash;
}

// The machine's, or that of a group of processes which was given a name of its own.
std::string Scope() {
  const char* scope = getenv("OSTREL_INSTANCE");
  return scope == nullptr ? std::string() : scope;
}

// Long names lose what an address has no room for; the fingerprint keeps them apart.
std::string AddressName(TextView name) {
  constexpr std::size_t longest = 60;
  const std::string whole = Scope() + '\n' + ToUtf8(name);
  const std::string shown = ToUtf8(name).substr(0, longest);
  return "ostrel-instance-" + std::to_string(Fingerprint(whole)) + '-' + shown;
}

// 0, or the system's error.
int Bind(int descriptor, const std::string& name) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  // The character 0 in front makes the name abstract.
  const std::size_t length = std::min(name.size(), sizeof address.sun_path - 1);
  std::copy_n(name.data(), length, address.sun_path + 1);
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
  return bind(descriptor, reinterpret_cast<const sockaddr*>(&address), size) == 0 ? 0 : errno;
}

}  // namespace

std::unique_ptr<InstanceLock> AcquireInstanceLock(TextView name) {
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  auto lock = std::make_unique<NameLock>(descriptor);
  if (descriptor >= 0 && Bind(descriptor, AddressName(name)) == EADDRINUSE) return nullptr;
  return lock;
}

}  // namespace ostrel::platform
