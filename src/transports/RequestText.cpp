#include "transports/RequestText.h"

#include <algorithm>
#include <utility>

namespace ostrel {
namespace {

constexpr std::size_t kChunk = 1024 * 1024;  // characters; most requests are shorter

}  // namespace

void RequestText::Chunk::Reserve(std::size_t characters) {
  if (characters <= sText.capacity()) return;
  oShare.Resize(characters * sizeof(char16_t));
  sText.reserve(characters);
  oShare.Resize(sText.capacity() * sizeof(char16_t));
}

/// Room for some of the wanted characters. The first chunk grows with the request; who has filled
/// it will fill others.
Text& RequestText::ChunkWithRoom(std::size_t wanted) {
  if (oChunks.empty()) {
    oChunks.emplace_back();
  } else if (oChunks.back().sText.size() == kChunk) {
    Chunk next;
    next.Reserve(kChunk);
    oChunks.push_back(std::move(next));
  }
  Chunk& chunk = oChunks.back();
  const std::size_t size = chunk.sText.size() + std::min(wanted, kChunk - chunk.sText.size());
  if (size > chunk.sText.capacity()) {
    chunk.Reserve(std::min(std::max(size, 2 * chunk.sText.capacity()), kChunk));
  }
  return chunk.sText;
}

void RequestText::Append(TextView piece) {
  while (!piece.empty()) {
    Text& chunk = ChunkWithRoom(piece.size());
    const TextView part = piece.substr(0, kChunk - chunk.size());
    chunk.append(part);
    lLength += part.size();
    piece.remove_prefix(part.size());
  }
}

Text RequestText::Take() {
  std::vector<Chunk> parts = std::exchange(oChunks, {});
  const std::size_t length = std::exchange(lLength, 0);
  Chunk whole;
  if (parts.size() == 1) {
    whole = std::move(parts.front());
  } else {
    whole.Reserve(length);
    for (Chunk& part : parts) {
      whole.sText.append(part.sText);
      part = Chunk();
    }
  }
  oTaken = std::move(whole.oShare);
  return std::move(whole.sText);
}

}  // namespace ostrel
