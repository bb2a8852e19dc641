#include "platform/posix/LookUpThread.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/posix/ErrorNumbers.h"
#include "platform/posix/LoopWatch.h"

namespace ostrel::platform {
namespace {

constexpr std::size_t kMostWaiting = 64;

}  // namespace

SocketResult<std::uint32_t> FindHostAddress(const std::string& host) {
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* first = nullptr;
  const int result = getaddrinfo(host.c_str(), nullptr, &hints, &first);
  if (result != 0 || first == nullptr) {
    return {0, LookUpErrorOf(result == 0 ? EAI_NONAME : result)};
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(first, freeaddrinfo);
  return {ntohl(reinterpret_cast<const sockaddr_in*>(first->ai_addr)->sin_addr.s_addr), 0};
}

/// Shared with the thread, which may be in the name service when the program ends.
struct LookUpThread::Shared {
  struct Request {
    std::string host;
    Completion completion;

    /// Without the memory to post its result a look-up never ends; its owner can cancel it.
    void LookUp(LoopMailbox& loop) noexcept {
      try {
        const auto address = FindHostAddress(host);
        loop.Post([done = std::move(completion), address] { done(address); });
      } catch (const std::bad_alloc&) {
        return;
      }
    }
  };

  std::shared_ptr<LoopMailbox> mailbox = TheMailbox();
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Request> requests;
  bool ended = false;
};

LookUpThread::LookUpThread() : oShared(std::make_shared<Shared>()) {}

LookUpThread::~LookUpThread() {
  const std::lock_guard lock(oShared->mutex);
  oShared->ended = true;
  oShared->requests.clear();
  oShared->changed.notify_all();
}

bool LookUpThread::Start(std::string host, Completion completion) {
  const std::lock_guard lock(oShared->mutex);
  if (oShared->requests.size() >= kMostWaiting) return false;
  try {
    if (!bRunning) {
      std::thread(Work, oShared).detach();
      bRunning = true;
    }
    oShared->requests.push_back({std::move(host), std::move(completion)});
  } catch (const std::exception&) {  // no thread, or no memory
    return false;
  }
  oShared->changed.notify_all();
  return true;
}

void LookUpThread::Work(const std::shared_ptr<Shared>& shared) noexcept {
  std::unique_lock lock(shared->mutex);
  for (;;) {
    shared->changed.wait(lock, [&] { return shared->ended || !shared->requests.empty(); });
    if (shared->ended) return;
    Shared::Request request = std::move(shared->requests.front());
    shared->requests.pop_front();
    lock.unlock();
    request.LookUp(*shared->mailbox);
    lock.lock();
  }
}

}  // namespace ostrel::platform
