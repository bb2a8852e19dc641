// Company files in memory, which can be made to fail.
#pragma once

#include <map>
#include <string>

#include "platform/SystemError.h"
#include "simulator/CompanyStorage.h"

namespace ostrel::doubles {

class FakeCompanyStorage : public simulator::CompanyStorage {
 public:
  std::map<Text, std::string> Files;
  int iReplaceError = 0;  // unless 0, Replace fails with it
  int iReplaced = 0;

  int Read(TextView path, std::string& bytes) override {
    const auto found = Files.find(Text(path));
    if (found == Files.end()) return platform::kFileNotFound;
    bytes = found->second;
    return 0;
  }

  int Replace(TextView path, std::string_view bytes) override {
    if (iReplaceError != 0) return iReplaceError;
    Files[Text(path)] = bytes;
    ++iReplaced;
    return 0;
  }
};

}  // namespace ostrel::doubles
