// Bytes received that nobody has asked for yet. Taking some off the front moves the rest only once
// in a while, so that a buffer may be emptied in small portions.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ostrel {

class ReceiveBuffer {
 public:
  void Append(std::span<const char> bytes);
  std::size_t Size() const { return bytes.size() - taken; }
  /// The first bytes, all of them when there are fewer; good until the buffer is changed.
  std::string_view Front(std::size_t count) const;
  void Remove(std::size_t count);
  void Clear();

 private:
  std::string bytes;
  std::size_t taken = 0;
};

}  // namespace ostrel
