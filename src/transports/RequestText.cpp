#include "transports/RequestText.h"

#include <utility>

namespace ostrel {
namespace {

constexpr std::size_t kChunk = 1024 * 1024;  // characters; most requests are shorter

}  // namespace

/// The first chunk grows with the request; who has filled it will fill others.
Text& RequestText::ChunkWithRoom() {
  if (chunks.empty()) {
    chunks.emplace_back();
  } else if (chunks.back().size() == kChunk) {
    chunks.emplace_back().reserve(kChunk);
  }
  return chunks.back();
}

void RequestText::Append(TextView piece) {
  while (!piece.empty()) {
    Text& chunk = ChunkWithRoom();
    const TextView part = piece.substr(0, kChunk - chunk.size());
    chunk.append(part);
    lLength += part.size();
    piece.remove_prefix(part.size());
  }
}

Text RequestText::Take() {
  std::vector<Text> parts = std::exchange(chunks, {});
  const std::size_t length = std::exchange(lLength, 0);
  if (parts.size() == 1) return std::move(parts.front());
  Text whole;
  whole.reserve(length);
  for (Text& part : parts) {
    whole.append(part);
    part = Text();
  }
  return whole;
}

}  // namespace ostrel
