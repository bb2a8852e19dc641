// Where company files lie. Abstract so that tests need no disk.
#pragma once

#include <string>
#include <string_view>

#include "util/Text.h"

namespace ostrel::simulator {

/// Paths and error numbers as in platform/Files.h.
class CompanyStorage {
 public:
  virtual ~CompanyStorage() = default;
  /// 0 and the whole file, or the error number.
  virtual int Read(TextView path, std::string& bytes) = 0;
  /// The existing file holds these bytes, safe on disk (0), or what it held before (the error
  /// number); never a part.
  virtual int Replace(TextView path, std::string_view bytes) = 0;
};

/// On the system's disks.
class CompanyFiles : public CompanyStorage {
 public:
  int Read(TextView path, std::string& bytes) override;
  int Replace(TextView path, std::string_view bytes) override;
};

}  // namespace ostrel::simulator
