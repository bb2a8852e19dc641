#include "platform/SingleInstance.h"

#include <windows.h>

#include "platform/win32/Path.h"

namespace ostrel::platform {
namespace {

class MutexLock : public InstanceLock {
 public:
  /// Null: holds nothing.
  explicit MutexLock(HANDLE mutex) : hMutex(mutex) {}
  ~MutexLock() override {
    if (hMutex != nullptr) CloseHandle(hMutex);
  }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  HANDLE hMutex;
};

}  // namespace

std::unique_ptr<InstanceLock> AcquireInstanceLock(TextView name) {
  // The lock is the existence of the name, which goes when the last handle is closed.
  const HANDLE mutex = CreateMutexW(nullptr, TRUE, ToWide(name).c_str());
  const DWORD error = GetLastError();
  auto lock = std::make_unique<MutexLock>(mutex);
  const bool isAnotherUsers = mutex == nullptr && error == ERROR_ACCESS_DENIED;
  if (isAnotherUsers || (mutex != nullptr && error == ERROR_ALREADY_EXISTS)) return nullptr;
  return lock;
}

}  // namespace ostrel::platform
