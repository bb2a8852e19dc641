// The bytes that a socket holds on either side of its owner: those received that nobody has asked
// for yet, and those accepted for sending that the network has not taken yet.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>

#include "util/Text.h"
#include "util/TextBudget.h"

namespace ostrel {

/// Taking bytes off the front moves the rest only once in a while, so that a buffer may be emptied
/// in small portions.
class ReceiveBuffer {
 public:
  void Append(std::span<const char> bytes);
  std::size_t Size() const { return sBytes.size() - lTaken; }
  /// The first bytes, all of them when there are fewer; good until the buffer is changed.
  std::string_view Front(std::size_t count) const;
  void Remove(std::size_t count);
  void Clear();

 private:
  std::string sBytes;
  std::size_t lTaken = 0;
};

/// Held in chunks, so that taking some off the front moves nothing, and queueing more never copies
/// what waits already. The chunks count against the budget of all texts.
class SendQueue {
 public:
  /// These raise std::bad_alloc, the queue unchanged, without memory for all of it.
  void AddText(TextView text);
  void AddBytes(std::span<const char> bytes);

  bool Empty() const { return lSize == 0; }
  std::size_t Size() const { return lSize; }
  /// Bytes from the front on, as many as lie together.
  std::span<const char> Front() const;
  /// Takes bytes off the front, at most as many as Front has.
  void Remove(std::size_t count);
  /// Takes back the bytes that were added last.
  void RemoveLast(std::size_t count);
  void Clear();

 private:
  struct Chunk {
    TextBudget::Share oShare;
    std::string sBytes;
  };

  std::string& ChunkFor(std::size_t bytes);

  std::deque<Chunk> oChunks;
  std::size_t lTaken = 0;  // bytes of the first chunk that are gone
  std::size_t lSize = 0;
};

}  // namespace ostrel
