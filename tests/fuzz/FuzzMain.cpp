// The function that the fuzzer calls; the program has one target.
#include "tests/fuzz/FuzzTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ostrel::fuzz::Target target = ostrel::fuzz::Targets().at(0);
  target.Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
