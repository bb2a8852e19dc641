// Company files and journals in memory, which can be made to fail, or to end as a crash ends them.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/SystemError.h"
#include "simulator/company/CompanyStorage.h"

namespace ostrel::doubles {

class FakeCompanyStorage : public simulator::CompanyStorage {
 public:
  std::map<Text, std::string> Files;
  int iWriteError = 0;   // unless 0, all that changes files fails with it
  int iRenameError = 0;  // the same of Rename alone
  int iWritten = 0;      // how often files were changed
  /// Raised instead of the change of this number, counted from 1; 0: never.
  struct Crash {};
  int iCrashAt = 0;
  /// Bytes that the change writes before it crashes.
  std::size_t lWrittenBeforeCrash = 0;

  int Read(TextView path, std::string& bytes) override {
    const auto found = Files.find(Text(path));
    if (found == Files.end()) return platform::kFileNotFound;
    bytes = found->second;
    return 0;
  }

  int CheckWritable(TextView path, simulator::FileMark& mark) override {
    const auto found = Files.find(Text(path));
    if (found == Files.end()) return platform::kFileNotFound;
    const auto digest = static_cast<std::int64_t>(std::hash<std::string>()(found->second) >> 2);
    mark = {.bytes = static_cast<std::int64_t>(found->second.size()),
            .modified = platform::TimePoint(platform::TimePoint::duration(digest))};
    return 0;
  }

  int WriteFrom(std::int64_t position, TextView path, std::string_view bytes) override {
    const auto before = static_cast<std::size_t>(position);
    const auto write = [&](std::string_view written) {
      std::string& file = Files[Text(path)];
      file.resize(before);
      file.append(written);
    };
    return Change([&] { write(bytes); }, [&] { write(bytes.substr(0, lWrittenBeforeCrash)); });
  }

  int Rename(TextView from, TextView to) override {
    if (iRenameError != 0) return iRenameError;
    return Change([&] {
      Files[Text(to)] = Files.at(Text(from));
      Files.erase(Text(from));
    });
  }

  int Erase(TextView path) override {
    return Change([&] { Files.erase(Text(path)); });
  }

  int iLockError = 0;
  std::vector<Text> Locked;  // while the lock lives

  simulator::CompanyHold Lock(TextView path) override {
    if (iLockError != 0) return {.error = iLockError};
    return {.lock = std::make_unique<FakeLock>(*this, Text(path))};
  }

 private:
  struct FakeLock : simulator::CompanyLock {
    FakeLock(FakeCompanyStorage& storage, Text path) : oStorage(storage), sPath(std::move(path)) {
      oStorage.Locked.push_back(sPath);
    }
    ~FakeLock() override { std::erase(oStorage.Locked, sPath); }
    FakeCompanyStorage& oStorage;
    Text sPath;
  };

  int Change(
      const std::function<void()>& carryOut, const std::function<void()>& begin = [] {}) {
    if (iWriteError != 0) return iWriteError;
    if (++iWritten == iCrashAt) {
      begin();
      throw Crash();
    }
    carryOut();
    return 0;
  }
};

}  // namespace ostrel::doubles
