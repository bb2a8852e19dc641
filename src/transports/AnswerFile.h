// The response file of one request. Room for an error is reserved on the disk before the request is
// deleted, so that there is an answer whatever happens then.
#pragma once

#include <functional>

#include "gateway/WholeFile.h"
#include "util/Text.h"

namespace ostrel {

/// The codes of the error files that are the folder transport's own.
inline constexpr TextView kErrorOutOfMemory = u"7";
inline constexpr TextView kErrorRequestTooLong = u"14";
inline constexpr TextView kErrorInternal = u"51";
inline constexpr TextView kErrorResponseNotWritten = u"57";

/// Writes the response into the open file; false when it is not whole.
using ResponseWriter = std::function<bool(TextView response, WholeFile& file)>;

class AnswerFile {
 public:
  explicit AnswerFile(TextView path);
  /// What is owed and was not put in its place is tried once more, and else left beside it.
  ~AnswerFile();
  AnswerFile(const AnswerFile&) = delete;
  AnswerFile& operator=(const AnswerFile&) = delete;

  const Text& Path() const { return sPath; }

  /// Creates the folder when it is missing. 0, or the error number (platform/SystemError.h).
  int Reserve();
  /// The request has been deleted.
  void Owe() { bOwed = true; }

  /// A response that cannot be written whole becomes an error.
  void WriteResponse(TextView response, const ResponseWriter& write);
  /// A message for which there is no room on the disk is cut.
  void WriteError(TextView errorNumber, TextView message);
  /// 0, or the error number; may be tried again. Without a complete answer it is an error.
  int PutInPlace();

 private:
  bool Open();
  bool TryWriteError(TextView errorNumber, TextView message);
  int TryPutInPlace();

  Text sPath;
  WholeFile oFile;
  bool bComplete = false;
  bool bOwed = false;
};

}  // namespace ostrel
