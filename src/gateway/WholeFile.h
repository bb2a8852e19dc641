// A file that another program waits for: written beside its place under another name and put there
// when it is complete, so that nobody sees half of it.
#pragma once

#include <cstddef>

#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

class WholeFile {
 public:
  /// The place may be taken by an earlier file. The name it is written under ends in ".part", so
  /// that no search for request files finds it.
  explicit WholeFile(TextView path);
  /// Deletes what was not put in its place.
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  /// These return false on failure (no such folder, disk full, the place in use by another
  /// program); Error then tells why.
  /// Opens the file, or goes back to the start of the open file; the file ends at what is written
  /// from there on.
  bool Open();
  /// Makes sure of room on the disk for so many bytes, and goes back to the start.
  bool Reserve(std::size_t bytes);
  bool Write(Text text);
  /// The file is complete.
  bool Close();
  /// Closes it when that has not been done. May be tried again.
  bool PutInPlace();
  /// Number of the last failure (platform/SystemError.h); 0 when the last operation succeeded.
  int Error() const;

  /// What is not put in its place stays for people to find.
  void Keep();

 private:
  cFileIO oFile;
  Text sPath;         // with the file class's rules for folders applied
  Text sPartialPath;  // empty unless there is a partial file
  int iPlaceError = 0;
};

}  // namespace ostrel
