// Every call that the program makes of these goes through here, and one of them fails as the plan
// says. A program calls an imported function through a pointer of a known name; these are the
// pointers, defined here before the import libraries can.
#include <winsock2.h>
// The headers below need the types of the one above.
#include <windows.h>

#include "tests/faults/FaultPlan.h"

namespace ostrel::faults {
namespace {

template <typename Function>
Function* Real(const char* library, const char* name) {
  const HMODULE module = LoadLibraryA(library);
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

template <typename Result>
Result Failed(Result failure) {
  SetLastError(static_cast<DWORD>(PlannedError()));
  return failure;
}

// A reset is told by a connection that has gone.
void EndWhenReset(SOCKET connection) {
  if (PlannedError() == WSAECONNRESET) shutdown(connection, SD_BOTH);
}

}  // namespace
}  // namespace ostrel::faults

using ostrel::faults::EndWhenReset;
using ostrel::faults::Failed;
using ostrel::faults::Operation;
using ostrel::faults::Real;

#define FAULTY(library, name, bytes, Result, parameters, arguments, failure)  \
  static Operation name##Operation(#name);                                    \
  static Result WINAPI name##Faulty parameters {                              \
    if (name##Operation.Fails()) return failure;                              \
    static auto* const real = Real<Result WINAPI parameters>(library, #name); \
    return real arguments;                                                    \
  }                                                                           \
  extern "C" void* name##Import asm("__imp__" #name "@" #bytes);              \
  void* name##Import = reinterpret_cast<void*>(&name##Faulty);

#define FILES(name, bytes, Result, parameters, arguments, failure) \
  FAULTY("kernel32.dll", name, bytes, Result, parameters, arguments, Failed<Result>(failure))
#define SOCKETS(name, bytes, Result, parameters, arguments, failure) \
  FAULTY("ws2_32.dll", name, bytes, Result, parameters, arguments, Failed<Result>(failure))
#define CONNECTIONS(name, bytes, Result, parameters, arguments, failure) \
  FAULTY("ws2_32.dll", name, bytes, Result, parameters, arguments,       \
         (EndWhenReset(one), Failed<Result>(failure)))

// clang-format off: a line each
FILES(CreateFileW, 28, HANDLE,
      (LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
       DWORD flags, HANDLE like),
      (path, access, share, security, how, flags, like), INVALID_HANDLE_VALUE)
FILES(ReadFile, 20, BOOL,
      (HANDLE file, LPVOID buffer, DWORD size, LPDWORD done, LPOVERLAPPED where),
      (file, buffer, size, done, where), FALSE)
FILES(WriteFile, 20, BOOL,
      (HANDLE file, LPCVOID bytes, DWORD size, LPDWORD done, LPOVERLAPPED where),
      (file, bytes, size, done, where), FALSE)
FILES(FlushFileBuffers, 4, BOOL, (HANDLE file), (file), FALSE)
FILES(SetEndOfFile, 4, BOOL, (HANDLE file), (file), FALSE)
FILES(SetFilePointerEx, 20, BOOL,
      (HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER now, DWORD method),
      (file, distance, now, method), FALSE)
FILES(GetFileSizeEx, 8, BOOL, (HANDLE file, PLARGE_INTEGER size), (file, size), FALSE)
FILES(MoveFileExW, 12, BOOL, (LPCWSTR from, LPCWSTR to, DWORD flags), (from, to, flags), FALSE)
FILES(DeleteFileW, 4, BOOL, (LPCWSTR path), (path), FALSE)
FILES(CreateDirectoryW, 8, BOOL, (LPCWSTR path, LPSECURITY_ATTRIBUTES security), (path, security),
      FALSE)
FILES(FindFirstFileW, 8, HANDLE, (LPCWSTR pattern, LPWIN32_FIND_DATAW found), (pattern, found),
      INVALID_HANDLE_VALUE)
FILES(FindNextFileW, 8, BOOL, (HANDLE search, LPWIN32_FIND_DATAW found), (search, found), FALSE)
FILES(GetFileAttributesExW, 12, BOOL, (LPCWSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID found),
      (path, level, found), FALSE)
FILES(FindFirstChangeNotificationW, 12, HANDLE, (LPCWSTR folder, BOOL subfolders, DWORD what),
      (folder, subfolders, what), INVALID_HANDLE_VALUE)
FILES(FindNextChangeNotification, 4, BOOL, (HANDLE notification), (notification), FALSE)
FILES(CreateMutexW, 12, HANDLE, (LPSECURITY_ATTRIBUTES security, BOOL own, LPCWSTR name),
      (security, own, name), nullptr)
// A value that cannot be read is its default.
FAULTY("kernel32.dll", GetPrivateProfileStringA, 24, DWORD,
       (LPCSTR section, LPCSTR key, LPCSTR otherwise, LPSTR value, DWORD size, LPCSTR path),
       (section, key, otherwise, value, size, path),
       Failed<DWORD>(static_cast<DWORD>(lstrlenA(lstrcpynA(value, otherwise,
                                                           static_cast<int>(size))))))
SOCKETS(socket, 12, SOCKET, (int family, int kind, int protocol), (family, kind, protocol),
        INVALID_SOCKET)
SOCKETS(bind, 12, int, (SOCKET one, const sockaddr* address, int size), (one, address, size),
        SOCKET_ERROR)
SOCKETS(listen, 8, int, (SOCKET one, int backlog), (one, backlog), SOCKET_ERROR)
SOCKETS(accept, 12, SOCKET, (SOCKET one, sockaddr* address, int* size), (one, address, size),
        INVALID_SOCKET)
SOCKETS(WSAAsyncSelect, 16, int, (SOCKET one, HWND window, unsigned message, long events),
        (one, window, message, events), SOCKET_ERROR)
CONNECTIONS(sendto, 24, int,
            (SOCKET one, const char* bytes, int size, int flags, const sockaddr* address,
             int length),
            (one, bytes, size, flags, address, length), SOCKET_ERROR)
CONNECTIONS(recv, 16, int, (SOCKET one, char* buffer, int size, int flags),
            (one, buffer, size, flags), SOCKET_ERROR)
CONNECTIONS(recvfrom, 24, int,
            (SOCKET one, char* buffer, int size, int flags, sockaddr* address, int* length),
            (one, buffer, size, flags, address, length), SOCKET_ERROR)
SOCKETS(setsockopt, 20, int, (SOCKET one, int level, int option, const char* value, int size),
        (one, level, option, value, size), SOCKET_ERROR)
SOCKETS(getsockopt, 20, int, (SOCKET one, int level, int option, char* value, int* size),
        (one, level, option, value, size), SOCKET_ERROR)
SOCKETS(getsockname, 12, int, (SOCKET one, sockaddr* address, int* size), (one, address, size),
        SOCKET_ERROR)
SOCKETS(getpeername, 12, int, (SOCKET one, sockaddr* address, int* size), (one, address, size),
        SOCKET_ERROR)
// clang-format on
