// Whether a company file and its journal are sound.
#pragma once

#include <string>
#include <vector>

#include "simulator/company/CompanyStorage.h"
#include "simulator/values/Dates.h"

namespace ostrel::simulator {

struct CompanyReport {
  int error = 0;               // not 0: the files cannot be read (platform/SystemError.h)
  std::vector<Text> problems;  // in words, a hundred of a sort at most
  Text summary;                // what the company holds, when it can be told
};

CompanyReport CheckCompany(TextView path, CompanyStorage& storage, const Stamp& now);

}  // namespace ostrel::simulator
