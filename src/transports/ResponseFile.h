// The response file of one request. Room for an error is reserved on the disk before the request is
// deleted, so that there is a response whatever happens then.
#pragma once

#include <functional>

#include "gateway/WholeFile.h"
#include "util/Text.h"

namespace ostrel {

/// Writes an error file: the first line names the number, the second is the message. False when it
/// is not whole.
bool WriteErrorFile(WholeFile& file, float errorNumber, TextView message);

/// Writes the response into the open file; false when it is not whole.
using ResponseWriter = std::function<bool(TextView response, WholeFile& file)>;

class ResponseFile {
 public:
  struct Paths {
    Text sPlace;     // where the client looks for it
    Text sReserved;  // beside it, until it is finished
    Text sFinished;  // beside it, while its place is in use
  };
  explicit ResponseFile(Paths paths);
  /// A response that is owed and not in its place yet is tried once more, and else left beside it.
  ~ResponseFile();
  ResponseFile(const ResponseFile&) = delete;
  ResponseFile& operator=(const ResponseFile&) = delete;

  const Text& Path() const { return oPaths.sPlace; }

  /// Creates the folder when it is missing. 0, or the error number (platform/SystemError.h).
  int Reserve();
  /// The request has been deleted.
  void Owe() { bOwed = true; }
  /// The response was finished before, and stands at this path beside its place.
  void Adopt(TextView path);

  /// A response that cannot be written whole becomes an error.
  void WriteResponse(TextView response, const ResponseWriter& write);
  /// A message for which there is no room on the disk is cut.
  void WriteError(float errorNumber, TextView message);
  /// 0, or the error number; may be tried again. Without a complete response it is an error. A
  /// finished one whose place is in use gets the name that says so.
  int PutInPlace();

 private:
  bool Open();
  bool TryWriteError(float errorNumber, TextView message);
  int TryPutInPlace();
  void SetAside();

  Paths oPaths;
  WholeFile oFile;
  bool bComplete = false;
  bool bOwed = false;
  bool bAside = false;  // under the name of a finished one
};

}  // namespace ostrel
