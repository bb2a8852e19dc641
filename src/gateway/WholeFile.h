// A file that another program waits for: written beside its place under another name and put there
// when it is complete, so that nobody sees half of it. What is written beside is always a new file,
// so that nothing that stands there under its name is written to.
#pragma once

#include <cstddef>

#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

class WholeFile {
 public:
  /// The place may be taken by an earlier file. The path beside is in the same folder; without one
  /// it is `path` & ".part", so that no search for request files finds it.
  explicit WholeFile(TextView path);
  WholeFile(TextView path, TextView besidePath);
  /// Deletes what was not put in its place.
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  /// These return false on failure (no such folder, disk full, the place in use by another
  /// program); Error then tells why.
  /// Creates the file, or goes back to the start of the open file; the file ends at what is written
  /// from there on. A file that is left over at the path beside is erased, unless another program
  /// has it open; a link there is an error.
  bool Open();
  /// Makes sure of room on the disk for so many bytes, and goes back to the start.
  bool Reserve(std::size_t bytes);
  bool Write(Text text);
  /// The file is complete.
  bool Close();
  /// Closes it when that has not been done. May be tried again.
  bool PutInPlace();
  /// Gives the complete file another name beside its place.
  bool Rename(TextView besidePath);
  /// The complete file stands at this path beside its place already.
  void Adopt(TextView besidePath);
  /// Number of the last failure (platform/SystemError.h); 0 when the last operation succeeded.
  int Error() const { return iError; }

  /// The file stays for people to find although it is not put in its place.
  void Keep() { sWritten.clear(); }

 private:
  bool Create();
  bool MoveTo(const Text& path);
  bool Finish(int error);
  int FileError() const;

  cFileIO oFile;
  Text sPath, sBesidePath;  // with the file class's rules for folders applied
  Text sWritten;            // where the file is now; empty unless there is one
  int iError = 0;
};

}  // namespace ostrel
