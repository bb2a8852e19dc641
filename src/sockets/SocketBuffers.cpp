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

void ReceiveBuffer::Append(std::span<const char> more) { sBytes.append(more.data(), more.size()); }

std::string_view ReceiveBuffer::Front(std::size_t count) const {
  return std::string_view(sBytes).substr(lTaken, count);
}

void ReceiveBuffer::Remove(std::size_t count) {
  lTaken += count;
  if (lTaken >= sBytes.size()) {
    Clear();
  } else if (lTaken > sBytes.size() / 2) {
    sBytes.erase(0, lTaken);
    lTaken = 0;
  }
}

void ReceiveBuffer::Clear() {
  lTaken = 0;
  sBytes.clear();
  if (sBytes.capacity() > kKeptBytes) sBytes.shrink_to_fit();
}

/// The last chunk while it has room, else a new one. The first takes no more than its own bytes:
/// most messages leave at once.
std::string& SendQueue::ChunkFor(std::size_t bytes) {
  if (oChunks.empty() || oChunks.back().sBytes.capacity() - oChunks.back().sBytes.size() < bytes) {
    Chunk chunk;
    const std::size_t room = oChunks.empty() ? bytes : std::max(bytes, kChunkBytes);
    chunk.oShare.Resize(room);
    chunk.sBytes.reserve(room);
    oChunks.push_back(std::move(chunk));
  }
  return oChunks.back().sBytes;
}

void SendQueue::AddText(TextView text) {
  if (!text.empty()) {
    AppendTextAsBytes(ChunkFor(text.size()), text);
    lSize += text.size();
  }
}

void SendQueue::AddBytes(std::span<const char> bytes) {
  if (!bytes.empty()) {
    ChunkFor(bytes.size()).append(bytes.data(), bytes.size());
    lSize += bytes.size();
  }
}

std::span<const char> SendQueue::Front() const {
  return Empty() ? std::span<const char>()
                 : std::span<const char>(oChunks.front().sBytes).subspan(lTaken);
}

void SendQueue::Remove(std::size_t count) {
  lTaken += count;
  lSize -= count;
  if (Empty()) {
    Clear();
  } else if (lTaken == oChunks.front().sBytes.size()) {
    oChunks.pop_front();
    lTaken = 0;
  }
}

void SendQueue::RemoveLast(std::size_t count) {
  lSize -= count;
  if (Empty()) return Clear();
  while (count > 0) {
    std::string& last = oChunks.back().sBytes;
    const std::size_t part = std::min(count, last.size());
    last.resize(last.size() - part);
    count -= part;
    if (last.empty()) oChunks.pop_back();
  }
}

void SendQueue::Clear() {
  oChunks.clear();
  lTaken = 0;
  lSize = 0;
}

}  // namespace ostrel
