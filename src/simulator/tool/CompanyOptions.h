// The command line of ostrel-company: its task and the options of the task.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "simulator/tool/Business.h"
#include "util/Text.h"

namespace ostrel::simulator {

/// The command line cannot be understood; what() says why, in UTF-8.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(TextView reason) : std::runtime_error(ToUtf8(reason)) {}
};

enum class CompanyTask { kHelp, kCreate, kCheck, kPrint, kSchema, kMessages };

struct CompanyOptions {
  CompanyTask task = CompanyTask::kCreate;
  BusinessSize size;
  Text file;
  Text kind;  // to print; empty: all
};

/// Raises UsageError.
CompanyOptions ParseCompanyOptions(const std::vector<Text>& arguments);

extern const TextView kCompanyUsage;

}  // namespace ostrel::simulator
