// Every call that the program makes of these goes through here (the linker's --wrap, for each
// FAULTY line below), and one of them fails as the plan says.
#include <dirent.h>
#include <ifaddrs.h>
#include <netdb.h>
#include <poll.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>

#include "tests/faults/FaultPlan.h"

namespace ostrel::faults {
namespace {

template <typename Result>
Result Failed(Result failure) {
  errno = PlannedError();
  return failure;
}

// A reset is told by a connection that has gone.
void EndWhenReset(int file) {
  const linger atOnce = {1, 0};
  if (PlannedError() != ECONNRESET) return;
  setsockopt(file, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  shutdown(file, SHUT_RDWR);
}

}  // namespace
}  // namespace ostrel::faults

using ostrel::faults::EndWhenReset;
using ostrel::faults::Failed;
using ostrel::faults::Half;
using ostrel::faults::kShort;
using ostrel::faults::Operation;
using ostrel::faults::PlannedError;

#define FAULTY(name, Result, parameters, arguments, failure)     \
  extern "C" Result __real_##name parameters;                    \
  extern "C" Result __wrap_##name parameters;                    \
  static Operation name##Operation(#name);                       \
  extern "C" Result __wrap_##name parameters {                   \
    if (name##Operation.Fails()) return Failed<Result>(failure); \
    return __real_##name arguments;                              \
  }

// As above, and "short" carries out half of it. The descriptor is called "file".
#define FAULTY_SIZED(name, Result, parameters, arguments, half)   \
  extern "C" Result __real_##name parameters;                     \
  extern "C" Result __wrap_##name parameters;                     \
  static Operation name##Operation(#name);                        \
  extern "C" Result __wrap_##name parameters {                    \
    if (!name##Operation.Fails()) return __real_##name arguments; \
    if (PlannedError() == kShort) return __real_##name half;      \
    EndWhenReset(file);                                           \
    return Failed<Result>(-1);                                    \
  }

// clang-format off: a line each, which the build reads
// Files and folders.
FAULTY(open, int, (const char* path, int flags, mode_t mode), (path, flags, mode), -1)
FAULTY_SIZED(pread, ssize_t, (int file, void* buffer, size_t size, off_t at),
             (file, buffer, size, at), (file, buffer, Half(size), at))
FAULTY_SIZED(pwrite, ssize_t, (int file, const void* bytes, size_t size, off_t at),
             (file, bytes, size, at), (file, bytes, Half(size), at))
FAULTY(fsync, int, (int file), (file), -1)
FAULTY(ftruncate, int, (int file, off_t size), (file, size), -1)
FAULTY(fstat, int, (int file, struct stat* status), (file, status), -1)
FAULTY(fstatat, int, (int folder, const char* path, struct stat* status, int flags),
       (folder, path, status, flags), -1)
FAULTY(stat, int, (const char* path, struct stat* status), (path, status), -1)
FAULTY(lstat, int, (const char* path, struct stat* status), (path, status), -1)
FAULTY(statx, int, (int folder, const char* path, int flags, unsigned mask, struct statx* status),
       (folder, path, flags, mask, status), -1)
FAULTY(fchmod, int, (int file, mode_t mode), (file, mode), -1)
FAULTY(flock, int, (int file, int operation), (file, operation), -1)
FAULTY(fcntl, int, (int file, int command, long argument), (file, command, argument), -1)
FAULTY(rename, int, (const char* from, const char* to), (from, to), -1)
FAULTY(renameat2, int,
       (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags),
       (fromFolder, from, toFolder, to, flags), -1)
FAULTY(unlink, int, (const char* path), (path), -1)
FAULTY(mkdir, int, (const char* path, mode_t mode), (path, mode), -1)
FAULTY(mkostemp, int, (char* path, int flags), (path, flags), -1)
FAULTY(mkostemps, int, (char* path, int suffix, int flags), (path, suffix, flags), -1)
FAULTY(opendir, DIR*, (const char* path), (path), nullptr)
FAULTY(readdir, struct dirent*, (DIR * folder), (folder), nullptr)
// Notifications of folders and the event loop.
FAULTY(inotify_init1, int, (int flags), (flags), -1)
FAULTY(inotify_add_watch, int, (int queue, const char* path, uint32_t what), (queue, path, what),
       -1)
FAULTY_SIZED(read, ssize_t, (int file, void* buffer, size_t size), (file, buffer, size),
             (file, buffer, Half(size)))
FAULTY(epoll_create1, int, (int flags), (flags), -1)
FAULTY(epoll_ctl, int, (int loop, int change, int file, struct epoll_event* events),
       (loop, change, file, events), -1)
FAULTY(epoll_wait, int, (int loop, struct epoll_event* events, int most, int time),
       (loop, events, most, time), -1)
FAULTY(pipe2, int, (int* ends, int flags), (ends, flags), -1)
FAULTY(poll, int, (struct pollfd * files, nfds_t count, int time), (files, count, time), -1)
FAULTY(sigaction, int, (int number, const struct sigaction* action, struct sigaction* old),
       (number, action, old), -1)
// Sockets.
FAULTY(socket, int, (int family, int kind, int protocol), (family, kind, protocol), -1)
FAULTY(bind, int, (int file, const struct sockaddr* address, socklen_t size), (file, address, size),
       -1)
FAULTY(listen, int, (int file, int backlog), (file, backlog), -1)
FAULTY(accept4, int, (int file, struct sockaddr* address, socklen_t* size, int flags),
       (file, address, size, flags), -1)
FAULTY(connect, int, (int file, const struct sockaddr* address, socklen_t size),
       (file, address, size), -1)
FAULTY_SIZED(sendto, ssize_t,
             (int file, const void* bytes, size_t size, int flags, const struct sockaddr* address,
              socklen_t length),
             (file, bytes, size, flags, address, length),
             (file, bytes, Half(size), flags, address, length))
FAULTY_SIZED(recv, ssize_t, (int file, void* buffer, size_t size, int flags),
             (file, buffer, size, flags), (file, buffer, Half(size), flags))
FAULTY_SIZED(recvfrom, ssize_t,
             (int file, void* buffer, size_t size, int flags, struct sockaddr* address,
              socklen_t* length),
             (file, buffer, size, flags, address, length),
             (file, buffer, Half(size), flags, address, length))
FAULTY(shutdown, int, (int file, int how), (file, how), -1)
FAULTY(getsockopt, int, (int file, int level, int option, void* value, socklen_t* size),
       (file, level, option, value, size), -1)
FAULTY(setsockopt, int, (int file, int level, int option, const void* value, socklen_t size),
       (file, level, option, value, size), -1)
FAULTY(getsockname, int, (int file, struct sockaddr* address, socklen_t* size),
       (file, address, size), -1)
FAULTY(getpeername, int, (int file, struct sockaddr* address, socklen_t* size),
       (file, address, size), -1)
FAULTY(getifaddrs, int, (struct ifaddrs * *found), (found), -1)
// clang-format on
