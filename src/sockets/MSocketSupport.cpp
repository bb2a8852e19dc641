// The registry is the only link between the system's sockets and ours: it maps a handle to its
// owner, and a look-up of a host's name to the socket that asked. Both entries are removed before
// the owner goes, so that a notification which comes late finds nobody and is dropped.
#include "sockets/MSocketSupport.h"

#include <exception>

#include "sockets/DottedAddress.h"
#include "sockets/SocketErrorText.h"
#include "util/CodePage.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using platform::LookUpHandle;
using platform::SocketHandle;

constexpr int kCanceled = 10004;
constexpr std::uint32_t kNoAddress = 0xFFFFFFFF;

std::string SocketKey(SocketHandle socket) { return std::to_string(socket) + "S"; }
std::string ResolveKey(LookUpHandle lookUp) { return std::to_string(lookUp) + "R"; }

TextView StartUpErrorText(int number) {
  switch (number) {
    case 10092:
      return u"The version of Windows Sockets API support requested is not provided by this "
             u"particular Windows Sockets implementation.";
    case 10022:
      return u"The Windows Sockets version specified by the application is not supported by this "
             u"DLL.";
    case 10091:
      return u"The underlying network subsystem is not ready for network communication.";
    default:
      return SocketErrorText(number);
  }
}

/// An exception of one socket's handlers stays that socket's affair.
template <typename Notify>
void HandOver(SocketOwner& owner, Notify notify) noexcept {
  try {
    notify(owner);
  } catch (...) {
    try {
      owner.OnException(std::current_exception());
    } catch (...) {  // not even the report worked, for want of memory or by the same handler
      return;
    }
  }
}

}  // namespace

MSocketSupport::MSocketSupport(platform::SocketLayer& layer,
                               platform::SocketNotifications& notifications,
                               platform::HostNames& names)
    : oLayer(layer), oNotifications(notifications), oNames(names) {}

MSocketSupport::~MSocketSupport() { Cleanup(); }

void MSocketSupport::InitWinsockService() {
  if (bStarted) return;
  const auto started = oNotifications.StartUp();
  if (started.error != 0) {
    throw RunTimeError(started.error, u"MSocketSupport.InitWinsockService",
                       Text(StartUpErrorText(started.error)));
  }
  lLargestDatagram = started.value;
  bStarted = true;
}

void MSocketSupport::Cleanup() {
  if (bConnected) {
    oNotifications.DisconnectSink();
    bConnected = false;
  }
  if (bStarted) {
    oNotifications.CleanUp();
    bStarted = false;
  }
}

// The sink of notifications is made on first need.
bool MSocketSupport::HaveSink(TextView source) {
  bConnected = bConnected || oNotifications.ConnectSink(*this);
  if (!bConnected) Err.Set(kCanceled, Text(source), u"The operation was canceled.");
  return bConnected;
}

bool MSocketSupport::RegisterSocket(SocketHandle socket, SocketOwner& owner) {
  constexpr TextView source = u"MSocketSupport.RegisterSocket";
  if (!HaveSink(source)) return false;
  oRegistry[SocketKey(socket)] = &owner;
  const int error = oNotifications.Select(socket);
  if (error != 0) {
    oRegistry.erase(SocketKey(socket));
    Err.Set(error, Text(source), Text(SocketErrorText(error)));
  }
  return error == 0;
}

bool MSocketSupport::UnregisterSocket(SocketHandle socket) {
  const int error = oNotifications.Unselect(socket);
  return oRegistry.erase(SocketKey(socket)) != 0 && error == 0;
}

LookUpHandle MSocketSupport::ResolveHost(TextView host, SocketOwner& owner) {
  constexpr TextView source = u"MSocketSupport.ResolveHost";
  if (!HaveSink(source)) return 0;
  const auto started = oNotifications.StartLookUp(TextToBytes(host));
  if (started.error != 0) {
    Err.Set(started.error, Text(source), Text(SocketErrorText(started.error)));
    return 0;
  }
  oRegistry[ResolveKey(started.value)] = &owner;
  return started.value;
}

void MSocketSupport::CancelResolve(LookUpHandle lookUp) {
  oNotifications.CancelLookUp(lookUp);
  oRegistry.erase(ResolveKey(lookUp));
}

std::uint32_t MSocketSupport::AddressOf(TextView host) {
  if (const auto dotted = ParseDottedAddress(host)) return *dotted;
  InitWinsockService();
  return oNames.AddressOf(TextToBytes(host)).value_or(kNoAddress);
}

Text MSocketSupport::OwnAddress() {
  InitWinsockService();
  return DottedAddress(oNames.OwnAddress());
}

Text MSocketSupport::OwnName() {
  InitWinsockService();
  return BytesToText(oNames.OwnName());
}

void MSocketSupport::Offer(SocketHandle connection) {
  try {
    oOffered.insert(connection);
  } catch (...) {
    oLayer.Close(connection);
    throw;
  }
}

void MSocketSupport::Disown(SocketHandle connection) {
  if (oOffered.erase(connection) != 0) oLayer.Close(connection);
}

std::span<char> MSocketSupport::ReceiveBuffer(std::int32_t bytes) {
  if (bytes > lReceiveBuffer) {
    oReceiveBuffer = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(bytes));
    lReceiveBuffer = bytes;
  }
  return {oReceiveBuffer.get(), static_cast<std::size_t>(bytes)};
}

std::shared_ptr<SocketOwner> MSocketSupport::OwnerOf(const std::string& key) const {
  const auto found = oRegistry.find(key);
  return found == oRegistry.end() ? nullptr : found->second->weak_from_this().lock();
}

/// A notification for a socket that is not registered is old news of one that has gone.
void MSocketSupport::OnSocket(SocketHandle socket, platform::SocketEvent event,
                              int error) noexcept {
  if (const auto owner = OwnerOf(SocketKey(socket))) {
    HandOver(*owner, [=](SocketOwner& o) { o.OnNotification(event, error); });
  }
}

void MSocketSupport::OnLookUp(LookUpHandle lookUp, int error, std::uint32_t ip) noexcept {
  const std::string key = ResolveKey(lookUp);
  const auto owner = OwnerOf(key);
  oRegistry.erase(key);
  if (owner) {
    HandOver(*owner, [=](SocketOwner& o) { o.PostGetHostEvent(error, ip); });
  }
}

MSocketSupport& SocketSupport() {
  static MSocketSupport support(platform::SystemSockets(), platform::SystemSocketNotifications(),
                                platform::SystemHostNames());
  return support;
}

}  // namespace ostrel
