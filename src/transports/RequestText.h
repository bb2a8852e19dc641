// The text of a request while it arrives, of a few bytes or of hundreds of megabytes. Held in
// chunks: what has arrived is not copied again while more arrives, and once only at the end.
#pragma once

#include <cstddef>
#include <vector>

#include "util/Text.h"

namespace ostrel {

class RequestText {
 public:
  std::size_t Length() const { return lLength; }
  /// Raises std::bad_alloc without memory for it; part of the piece may have been added then.
  void Append(TextView piece);
  /// Hands the text over whole; nothing is left. Raises std::bad_alloc without memory for it.
  Text Take();

 private:
  Text& ChunkWithRoom();

  std::vector<Text> chunks;
  std::size_t lLength = 0;
};

}  // namespace ostrel
