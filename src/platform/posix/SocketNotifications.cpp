#include "platform/SocketNotifications.h"

#include <sys/resource.h>

#include <new>
#include <set>
#include <string>

#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/LookUpThread.h"
#include "platform/posix/SocketTable.h"

namespace ostrel::platform {
namespace {

constexpr std::int32_t kLargestDatagram = 65507;

/// A connection is a descriptor, and the usual limit of 1024 is soon reached.
void RaiseDescriptorLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
  }
}

class PosixNotifications final : public SocketNotifications {
 public:
  PosixNotifications() { TheSockets(); }  // made first, so that it is there until these have gone

  SocketResult<std::int32_t> StartUp() override {
    RaiseDescriptorLimit();
    return {kLargestDatagram, 0};
  }
  void CleanUp() override {}

  bool ConnectSink(SocketSink& sink) override {
    TheSockets().SetSink(&sink);
    return true;
  }
  void DisconnectSink() override { TheSockets().SetSink(nullptr); }

  int Select(SocketHandle socket) override { return AnnounceTo(socket, TheSockets().Sink()); }
  int Unselect(SocketHandle socket) override { return AnnounceTo(socket, nullptr); }

  SocketResult<LookUpHandle> StartLookUp(std::string_view host) override;
  void CancelLookUp(LookUpHandle lookUp) override { oPending.erase(lookUp); }

 private:
  static int AnnounceTo(SocketHandle socket, SocketSink* sink);
  void Finish(LookUpHandle lookUp, SocketResult<std::uint32_t> address);

  LookUpThread oThread;
  std::set<LookUpHandle> oPending;
  LookUpHandle lLastLookUp = 0;
};

int PosixNotifications::AnnounceTo(SocketHandle socket, SocketSink* sink) {
  WatchedSocket* const own = TheSockets().Find(socket);
  if (own == nullptr) return kNotASocket;
  try {
    own->AnnounceTo(sink);
    return 0;
  } catch (const std::bad_alloc&) {
    return kNoBuffers;
  }
}

SocketResult<LookUpHandle> PosixNotifications::StartLookUp(std::string_view host) {
  lLastLookUp = lLastLookUp % 0x7FFF + 1;
  const LookUpHandle lookUp = lLastLookUp;
  const auto finish = [this, lookUp](SocketResult<std::uint32_t> address) {
    Finish(lookUp, address);
  };
  try {
    oPending.insert(lookUp);
    if (oThread.Start(std::string(host), finish)) {
      return {lookUp, 0};
    }
  } catch (const std::bad_alloc&) {
    return {0, kNoBuffers};
  }
  oPending.erase(lookUp);
  return {0, kNoBuffers};
}

void PosixNotifications::Finish(LookUpHandle lookUp, SocketResult<std::uint32_t> address) {
  SocketSink* const sink = TheSockets().Sink();
  if (oPending.erase(lookUp) != 0 && sink != nullptr) {
    sink->OnLookUp(lookUp, address.error, address.value);
  }
}

}  // namespace

SocketNotifications& SystemSocketNotifications() {
  static PosixNotifications notifications;
  return notifications;
}

}  // namespace ostrel::platform
