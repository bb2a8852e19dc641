// Journals for fuzzers, which would never hit upon a right checksum by themselves.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "simulator/company/Journal.h"

namespace ostrel::fuzz {

/// Puts the head of a record before each of the texts that character 30 parts.
inline std::string Framed(std::string_view records) {
  std::string journal;
  std::uint64_t checksum = 0;
  while (!records.empty()) {
    const std::string_view xml = records.substr(0, records.find('\x1e'));
    records.remove_prefix(std::min(xml.size() + 1, records.size()));
    checksum = simulator::Checksum(xml, checksum);
    char size[16];
    std::snprintf(size, sizeof size, "%09zu", xml.size());
    journal += std::string("<?record ") + size + " " + simulator::ChecksumText(checksum) + "?>\n";
    journal += xml;
  }
  return journal;
}

}  // namespace ostrel::fuzz
