// The common ground of all sockets: starting the system's socket service, where notifications
// arrive, the registry that hands each to the socket it is for, and the pending error of what
// failed here.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <unordered_map>

#include "platform/SocketNotifications.h"
#include "platform/Sockets.h"
#include "util/Text.h"

namespace ostrel {

/// A socket as the registry knows it. Owners live in shared pointers: the registry holds none, but
/// whoever hands over a notification holds one until it returns, so that a handler may let go of
/// the socket that called it.
class SocketOwner : public std::enable_shared_from_this<SocketOwner> {
 public:
  virtual void OnNotification(platform::SocketEvent event, int error) = 0;
  /// ip counts only when error is 0.
  virtual void PostGetHostEvent(int error, std::uint32_t ip) = 0;
  /// An exception that left one of the two above, a handler of the owner's events included.
  virtual void OnException(const std::exception_ptr& exception) = 0;

 protected:
  ~SocketOwner() = default;
};

class MSocketSupport final : private platform::SocketSink {
 public:
  MSocketSupport(platform::SocketLayer& layer, platform::SocketNotifications& notifications,
                 platform::HostNames& names);
  /// Cleans up. No socket of it may be left.
  ~MSocketSupport();
  MSocketSupport(const MSocketSupport&) = delete;
  MSocketSupport& operator=(const MSocketSupport&) = delete;

  /// Starts the socket service once; raises RunTimeError "MSocketSupport.InitWinsockService".
  void InitWinsockService();
  void Cleanup();
  bool Started() const { return bStarted; }
  /// In bytes, as the socket service told when it was started.
  std::int32_t LargestDatagram() const { return lLargestDatagram; }

  /// Hands the socket's notifications to the owner from now on. False, with the pending error set,
  /// when that cannot be. The registry does not keep the owner alive: unregister before it goes.
  bool RegisterSocket(platform::SocketHandle socket, SocketOwner& owner);
  bool UnregisterSocket(platform::SocketHandle socket);

  /// Looks up a host's address for the owner's PostGetHostEvent. 0, with the pending error set,
  /// when it cannot be started.
  platform::LookUpHandle ResolveHost(TextView host, SocketOwner& owner);
  void CancelResolve(platform::LookUpHandle lookUp);

  /// The dotted address that the text is, or else the host's first; waits for the name service.
  /// 0xFFFFFFFF when there is none. This and the two below start the socket service.
  std::uint32_t AddressOf(TextView host);

  /// The machine's own, dotted; see platform/HostNames.h.
  Text OwnAddress();
  Text OwnName();

  /// A connection between the listener's accept and the socket that takes it over. One that nobody
  /// took over is closed by Disown, or by Offer when there is no memory to keep it.
  void Offer(platform::SocketHandle connection);
  void TakeOver(platform::SocketHandle connection) { oOffered.erase(connection); }
  void Disown(platform::SocketHandle connection);

  /// Memory for one receive, at least this many bytes; good until the next call.
  std::span<char> ReceiveBuffer(std::int32_t bytes);

  platform::SocketLayer& Layer() { return oLayer; }

 private:
  void OnSocket(platform::SocketHandle socket, platform::SocketEvent event,
                int error) noexcept override;
  void OnLookUp(platform::LookUpHandle lookUp, int error, std::uint32_t ip) noexcept override;

  bool HaveSink(TextView source);
  std::shared_ptr<SocketOwner> OwnerOf(const std::string& key) const;

  platform::SocketLayer& oLayer;
  platform::SocketNotifications& oNotifications;
  platform::HostNames& oNames;
  bool bStarted = false;
  bool bConnected = false;
  std::int32_t lLargestDatagram = 0;
  /// "123S" is the owner of socket 123, "123R" who waits for look-up 123.
  std::unordered_map<std::string, SocketOwner*> oRegistry;
  std::set<platform::SocketHandle> oOffered;
  std::unique_ptr<char[]> oReceiveBuffer;
  std::int32_t lReceiveBuffer = 0;
};

/// The process's own, on the system's sockets.
MSocketSupport& SocketSupport();

}  // namespace ostrel
