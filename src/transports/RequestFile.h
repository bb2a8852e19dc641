// A request file in the process folder: its text, and its end. In between nobody else can open it
// (platform/Files.h).
#pragma once

#include <cstddef>

#include "util/Text.h"
#include "util/cFileIO.h"

namespace ostrel {

class RequestFile {
 public:
  explicit RequestFile(TextView path) {
    oFile.FullFileName(path);
    oFile.RefuseLinks = true;
  }

  /// These return 0 or the error number (platform/SystemError.h).
  int Open();
  /// Every line ends with CR LF then, the last one too. Raises std::bad_alloc without memory for
  /// the text, std::length_error when it has more characters than `longest`.
  int Read(Text& request, std::size_t longest);
  int Delete();  // closes it

 private:
  int Error() const;

  cFileIO oFile;
};

}  // namespace ostrel
