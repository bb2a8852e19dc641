// The text of a request while it arrives, of a few bytes or of hundreds of megabytes. Held in
// chunks: what has arrived is not copied again while more arrives, and once only at the end. It
// counts against the budget of all texts.
#pragma once

#include <cstddef>
#include <vector>

#include "util/Text.h"
#include "util/TextBudget.h"

namespace ostrel {

class RequestText {
 public:
  std::size_t Length() const { return lLength; }
  /// Raises std::bad_alloc without memory for it; part of the piece may have been added then.
  void Append(TextView piece);
  /// Hands the text over whole; nothing is left but its share of the budget, for as long as this
  /// object lives. Raises std::bad_alloc without memory for it; the text is lost then.
  Text Take();

 private:
  struct Chunk {
    TextBudget::Share oShare;
    Text sText;

    void Reserve(std::size_t characters);
  };

  Text& ChunkWithRoom(std::size_t wanted);

  std::vector<Chunk> oChunks;
  std::size_t lLength = 0;
  TextBudget::Share oTaken;
};

}  // namespace ostrel
