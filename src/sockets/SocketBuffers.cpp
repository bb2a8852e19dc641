#include "sockets/SocketBuffers.h"

#include <algorithm>
#include <utility>

#include "util/CodePage.h"

namespace ostrel {
namespace {

// A receive buffer keeps this much for the next bytes; more is given back, as most connections idle
// most of the time.
constexpr std::size_t kKeptBytes = 4096;
constexpr std::size_t kChunkBytes = 64 * 1024;

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
  if (bytes.capacity() > kKeptBytes) bytes.shrink_to_fit();
}

/// The last chunk while it has room, else a new one. The first takes no more than its own bytes:
/// most messages leave at once.
std::string& SendQueue::ChunkFor(std::size_t bytes) {
  if (chunks.empty() || chunks.back().sBytes.capacity() - chunks.back().sBytes.size() < bytes) {
    Chunk chunk;
    const std::size_t room = chunks.empty() ? bytes : std::max(bytes, kChunkBytes);
    chunk.oShare.Resize(room);
    chunk.sBytes.reserve(room);
    chunks.push_back(std::move(chunk));
  }
  return chunks.back().sBytes;
}

void SendQueue::AddText(TextView text) {
  if (!text.empty()) {
    AppendTextAsBytes(ChunkFor(text.size()), text);
    size += text.size();
  }
}

void SendQueue::AddBytes(std::span<const char> bytes) {
  if (!bytes.empty()) {
    ChunkFor(bytes.size()).append(bytes.data(), bytes.size());
    size += bytes.size();
  }
}

std::span<const char> SendQueue::Front() const {
  return Empty() ? std::span<const char>()
                 : std::span<const char>(chunks.front().sBytes).subspan(taken);
}

void SendQueue::Remove(std::size_t count) {
  taken += count;
  size -= count;
  if (Empty()) {
    Clear();
  } else if (taken == chunks.front().sBytes.size()) {
    chunks.pop_front();
    taken = 0;
  }
}

void SendQueue::RemoveLast(std::size_t count) {
  size -= count;
  if (Empty()) return Clear();
  while (count > 0) {
    std::string& last = chunks.back().sBytes;
    const std::size_t part = std::min(count, last.size());
    last.resize(last.size() - part);
    count -= part;
    if (last.empty()) chunks.pop_back();
  }
}

void SendQueue::Clear() {
  chunks.clear();
  taken = 0;
  size = 0;
}

}  // namespace ostrel
