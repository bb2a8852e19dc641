// A fuzz target judges what the product makes of bytes from outside, and ends the program when that
// is wrong. A fuzzer's program has one target (FuzzMain.cpp); the test program "corpora" has all
// and replays their seeds on every system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::fuzz {

struct Target {
  std::string sName;  // of the folder of its seeds in tests/fuzz/corpus
  void (*Try)(std::string_view bytes);
};

/// Those that are linked into this program.
std::vector<Target>& Targets();

/// One for each target, as a constant of its source file.
struct Registered {
  Registered(const char* name, void (*attempt)(std::string_view bytes)) {
    Targets().push_back({name, attempt});
  }
};

/// The name of the seed that is being replayed; a failure names it.
std::string& InputName();
/// Says what did not hold, and ends the program.
void Require(bool condition, const char* what);

/// Hands the bytes out piece by piece: zeros, and nothing, once they are at their end.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : sRest(bytes) {}

  bool IsAtEnd() const { return sRest.empty(); }
  std::uint8_t Next() {
    const char next = sRest.empty() ? '\0' : sRest.front();
    sRest.remove_prefix(sRest.empty() ? 0 : 1);
    return static_cast<std::uint8_t>(next);
  }
  std::string_view Rest() const { return sRest; }

 private:
  std::string_view sRest;
};

}  // namespace ostrel::fuzz
