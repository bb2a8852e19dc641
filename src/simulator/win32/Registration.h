// The stand-in among the COM classes that the system knows. A real request processor under the same
// identifier is never replaced.
#pragma once

#include <ole2.h>

#include <string>

#include "util/Text.h"

namespace ostrel::simulator {

/// The outcome of a registration, for the user and as the process's exit code.
struct RegistrationResult {
  static constexpr int kDone = 0;
  static constexpr int kFailed = 1;
  /// Another request processor is registered, and stays so.
  static constexpr int kRefused = 2;

  int iExitCode = kDone;
  Text sMessage = {};  // one sentence, without a line end
};

/// For the current user; where the system ignores those registrations (Wine), for all. `program` is
/// the server's path. Takes the place of another copy of the same file name.
RegistrationResult RegisterServer(const CLSID& classId, const std::wstring& program);
/// Removes this program's registration, no other. Without one, that is a success as well.
RegistrationResult UnregisterServer(const CLSID& classId, const std::wstring& program);

}  // namespace ostrel::simulator
