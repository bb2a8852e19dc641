// Tells damaged bytes from whole ones, and one version of a file from another. Not a secret: who
// wants to can make bytes of any checksum.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ostrel::simulator {

/// Of bytes that follow others of the checksum `before`.
std::uint64_t Checksum(std::string_view bytes, std::uint64_t before = 0);

/// Sixteen digits, "5f3e22a19b0c44d1".
std::string ChecksumText(std::uint64_t checksum);

}  // namespace ostrel::simulator
