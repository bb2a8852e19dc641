// Where company files and their journals lie: the steps from which CompanyFile.h makes changes
// safe. Abstract so that tests need no disk, and can stop after each step.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "util/Text.h"

namespace ostrel::simulator {

/// Changes when another program writes the file.
struct FileMark {
  std::int64_t bytes = 0;
  platform::TimePoint modified;
  bool operator==(const FileMark&) const = default;
};

/// Keeps a company to this process while it lives; the system takes it back when the process dies.
class CompanyLock {
 public:
  virtual ~CompanyLock() = default;
};

/// A lock, or why there is none: kSharingViolation when another process has it.
struct CompanyHold {
  std::unique_ptr<CompanyLock> lock = nullptr;
  int error = 0;
};

/// Paths and error numbers as in platform/Files.h; results are 0 or an error number.
class CompanyStorage {
 public:
  virtual ~CompanyStorage() = default;
  /// The whole file.
  virtual int Read(TextView path, std::string& bytes) = 0;
  /// Fails when the existing file must not be changed: read-only, or in another program's use.
  virtual int CheckWritable(TextView path, FileMark& mark) = 0;
  /// The bytes stand from this position (in bytes) to the end of the file, safe on disk. The file
  /// is created when missing. On failure it ends at the position, and is gone where that is 0.
  virtual int WriteFrom(std::int64_t position, TextView path, std::string_view bytes) = 0;
  /// `from` takes the place of `to`, which may exist: at any moment the old or the new one is
  /// there.
  virtual int Rename(TextView from, TextView to) = 0;
  virtual int Erase(TextView path) = 0;
  /// The lock of the company whose file has this path. A storage that no other process can reach
  /// needs none.
  virtual CompanyHold Lock(TextView) { return {}; }
};

/// On the system's disks.
class CompanyFiles : public CompanyStorage {
 public:
  int Read(TextView path, std::string& bytes) override;
  int CheckWritable(TextView path, FileMark& mark) override;
  int WriteFrom(std::int64_t position, TextView path, std::string_view bytes) override;
  int Rename(TextView from, TextView to) override;
  int Erase(TextView path) override;
  /// Locks with a file ".sample.qbw.lock" beside the company, which nobody else can open.
  CompanyHold Lock(TextView path) override;
};

}  // namespace ostrel::simulator
