// The files of a folder that match a pattern, as they were when it was last looked at.
#pragma once

#include <utility>
#include <vector>

#include "platform/FileSystem.h"
#include "util/Text.h"

namespace ostrel {

class FileList {
 public:
  /// Nothing is listed before the next Refresh.
  void SetFolder(Text folder, Text pattern) {
    sFolder = std::move(folder);
    sPattern = std::move(pattern);
    sNames.clear();
  }
  void Refresh() { sNames = platform::ListFiles(sFolder, sPattern, &sUnreachable); }

  const Text& Folder() const { return sFolder; }
  /// In alphabetical order.
  const std::vector<Text>& Names() const { return sNames; }
  /// Those that match but cannot be opened under any path.
  const std::vector<Text>& Unreachable() const { return sUnreachable; }

 private:
  Text sFolder, sPattern;
  std::vector<Text> sNames, sUnreachable;
};

}  // namespace ostrel
