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
  void Refresh() { sNames = platform::ListFiles(sFolder, sPattern); }

  const Text& Folder() const { return sFolder; }
  /// In alphabetical order.
  const std::vector<Text>& Names() const { return sNames; }

 private:
  Text sFolder, sPattern;
  std::vector<Text> sNames;
};

}  // namespace ostrel
