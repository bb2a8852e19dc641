// A file that another program waits for: written beside its place under another name and put there
// when it is complete, so that nobody sees half of it.
#pragma once

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
  /// program); the file is then given up.
  bool Open();
  bool Write(Text text);
  bool PutInPlace();

 private:
  bool Failed() const;

  cFileIO oFile;
  Text sPath;         // with the file class's rules for folders applied
  Text sPartialPath;  // empty unless there is a partial file
};

}  // namespace ostrel
