// A folder of the test's own, gone with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "util/Text.h"

namespace ostrel::doubles {

class TemporaryFolder {
 public:
  TemporaryFolder() : oPath(std::filesystem::temp_directory_path() / NewName()) {
    std::filesystem::create_directory(oPath);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(oPath, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Product path of the folder, or of a name in it.
  Text Path() const { return oPath.u16string(); }
  Text Path(TextView name) const { return Path() + u"\\" + Text(name); }

  bool Holds(TextView name) const { return std::filesystem::exists(oPath / Text(name)); }
  std::size_t Count() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(oPath), {}));
  }

  /// The file's bytes; empty when there is none.
  std::string Read(TextView name) const {
    std::ifstream file(oPath / Text(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(TextView name, const std::string& bytes) const {
    std::ofstream(oPath / Text(name), std::ios::binary) << bytes;
  }
  void MakeFolder(TextView name) const { std::filesystem::create_directory(oPath / Text(name)); }

 private:
  static std::string NewName() {
    std::random_device random;
    return "ostrel-test-" + std::to_string(random()) + "-" + std::to_string(random());
  }

  std::filesystem::path oPath;
};

}  // namespace ostrel::doubles
