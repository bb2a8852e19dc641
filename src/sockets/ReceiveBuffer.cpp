#include "sockets/ReceiveBuffer.h"

namespace ostrel {
namespace {

/// Kept for the next bytes; more is given back, as most connections idle most of the time.
constexpr std::size_t kKeptBytes = 4096;

}  // namespace

void ReceiveBuffer::Append(std::span<const char> more) { bytes.append(more.data(), more.size()); }

std::string_view ReceiveBuffer::Front(std::size_t count) const {
  return std::string_view(bytes).substr(taken, count);
}

void ReceiveBuffer::Remove(std::size_t count) {
  taken += count;
  if (taken >= bytes.size()) {
    Clear();
  } else if (taken > bytes.size() / 2) {
    bytes.erase(0, taken);
    taken = 0;
  }
}

void ReceiveBuffer::Clear() {
  taken = 0;
  bytes.clear();
  if (bytes.capacity() > kKeptBytes) {
    bytes.shrink_to_fit();
  }
}

}  // namespace ostrel
