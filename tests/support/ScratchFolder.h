// A folder of the test's own for files, gone with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    do {
      oPath = std::filesystem::temp_directory_path() / ("ostrel-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(oPath));
  }
  ~ScratchFolder() {
    std::error_code ignored;  // a file that the test left open stays, on Windows
    std::filesystem::remove_all(oPath, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// The folder, without a separator at its end, or the path of something in it.
  Text Path() const { return oPath.u16string(); }
  Text Path(TextView name) const { return Path() + u"\\" + Text(name); }

  /// Names below are the folder's own entries, byte for byte and apart from the code under test.
  void Write(TextView name, std::string_view bytes) const {
    std::ofstream(oPath / name, std::ios::binary) << bytes;
  }
  std::string Read(TextView name) const {
    std::ifstream file(oPath / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool Has(TextView name) const { return std::filesystem::exists(oPath / name); }
  void Erase(TextView name) const { std::filesystem::remove(oPath / name); }
  void MakeFolder(TextView name) const { std::filesystem::create_directory(oPath / name); }
  /// False where the system does not let this user make links, as Wine does not.
  bool MakeLink(TextView target, TextView name) const {
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::path(target), oPath / name, error);
    return !error;
  }
  bool MakeFolderLink(TextView target, TextView name) const {
    std::error_code error;
    std::filesystem::create_directory_symlink(oPath / target, oPath / name, error);
    return !error;
  }
  std::size_t EntryCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(oPath), {}));
  }

 private:
  std::filesystem::path oPath;
};

}  // namespace ostrel
