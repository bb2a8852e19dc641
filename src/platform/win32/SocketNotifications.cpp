#include "platform/SocketNotifications.h"

#include <string>

#include "platform/win32/SocketWindow.h"

namespace ostrel::platform {
namespace {

constexpr WORD kVersion = 0x0101;

class WindowsNotifications final : public SocketNotifications {
 public:
  WindowsNotifications() { TheSocketWindow(); }  // made first, so that it is there until these go

  SocketResult<std::int32_t> StartUp() override {
    WSADATA data{};
    const int error = WSAStartup(kVersion, &data);
    if (error != 0) {
      return {0, error};
    }
    TheSocketWindow().RegisterMessages();
    return {data.iMaxUdpDg, 0};
  }
  void CleanUp() override { WSACleanup(); }

  bool ConnectSink(SocketSink& sink) override { return TheSocketWindow().Create(sink); }
  void DisconnectSink() override { TheSocketWindow().Destroy(); }

  int Select(SocketHandle socket) override { return TheSocketWindow().Select(socket); }
  int Unselect(SocketHandle socket) override { return TheSocketWindow().Unselect(socket); }

  SocketResult<LookUpHandle> StartLookUp(std::string_view host) override {
    return TheSocketWindow().StartLookUp(std::string(host));
  }
  void CancelLookUp(LookUpHandle lookUp) override { TheSocketWindow().CancelLookUp(lookUp); }
};

}  // namespace

SocketNotifications& SystemSocketNotifications() {
  static WindowsNotifications notifications;
  return notifications;
}

}  // namespace ostrel::platform
