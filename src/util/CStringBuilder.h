// Collects a long text from many small pieces; the layout of qbXML is built with it. The buffer
// grows in chunks, as seen from outside; the storage beneath grows faster than that, so that
// appending stays linear in texts of any length.
#pragma once

#include <cstddef>
#include <cstdint>

#include "util/Text.h"

namespace ostrel {

/// Sizes are in characters, positions count from 0. A text ends at 1,073,741,823 characters; what
/// would go beyond raises RunTimeError 7 and changes nothing.
class CStringBuilder {
 public:
  enum class Compare { kBinary = 0, kText = 1 /* ignores case */ };

  std::int32_t Length() const;
  /// A sum of growth steps, at least Length.
  std::int32_t Capacity() const;

  /// The growth step; 8192 on creation.
  std::int32_t ChunkSize() const;
  /// Raises RunTimeError 5 below 1 and above 1,073,741,823.
  void ChunkSize(std::int32_t characters);

  Text ToString() const&;
  /// Hands the text over without a copy; the builder is empty afterwards.
  Text ToString() &&;

  /// Sets storage aside for a text of this length, so that growing up to it copies nothing. Length
  /// and Capacity stay what they are.
  void Reserve(std::size_t characters);

  /// Replaces the contents; an empty text gives all space back.
  void TheString(TextView text);
  void Append(TextView text);
  void AppendByVal(TextView text);
  /// `count` blanks at the end.
  void AppendBlanks(std::int32_t count);

  /// Raises RunTimeError 9 unless `index` is from 0 to Length.
  void Insert(std::int32_t index, TextView text);
  void InsertByVal(std::int32_t index, TextView text);
  /// Removes `length` characters, or what there is of them. Raises RunTimeError 9 unless `index` is
  /// from 0 to Length and `length` at least 0.
  void Remove(std::int32_t index, std::int32_t length);

  /// Position of the first occurrence at or after `startIndex`, -1 when there is none. An empty
  /// text is found at `startIndex`. Raises RunTimeError 9 unless `startIndex` is from 0 to Length.
  std::int32_t Find(TextView toFind, std::int32_t startIndex = 0,
                    Compare compare = Compare::kBinary) const;

  /// When more than a chunk is unused, gives all whole unused chunks back.
  void HeapMinimize();

 private:
  void Hold(std::size_t characters);

  Text sBuffer;  // its size is the length in use
  std::int32_t lChunkSize = 16384;
  std::int32_t lCapacity = 0;  // this one and the chunk size: in bytes, twice the characters
};

}  // namespace ostrel
