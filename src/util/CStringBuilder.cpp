#include "util/CStringBuilder.h"

#include <limits>
#include <utility>

#include "util/RunTimeError.h"

namespace ostrel {
namespace {

constexpr std::int32_t kBytesPerCharacter = 2;
constexpr std::int32_t kMostCharacters =
    std::numeric_limits<std::int32_t>::max() / kBytesPerCharacter;

void RequireFit(std::size_t used, std::size_t added) {
  if (added <= kMostCharacters - used) return;
  throw RunTimeError(ErrorNumber::kOutOfMemory, u"CStringBuilder", u"Out of memory");
}

void RequireInRange(bool inRange, TextView member) {
  if (inRange) return;
  throw RunTimeError(ErrorNumber::kSubscriptOutOfRange, u"CStringBuilder." + Text(member),
                     u"Subscript out of range");
}

}  // namespace

std::int32_t CStringBuilder::Length() const { return static_cast<std::int32_t>(sBuffer.size()); }

std::int32_t CStringBuilder::Capacity() const { return lCapacity / kBytesPerCharacter; }

std::int32_t CStringBuilder::ChunkSize() const { return lChunkSize / kBytesPerCharacter; }

void CStringBuilder::ChunkSize(std::int32_t characters) {
  if (characters < 1 || characters > kMostCharacters) {
    throw RunTimeError(ErrorNumber::kInvalidProcedureCall, u"CStringBuilder.ChunkSize",
                       u"Invalid procedure call or argument");
  }
  lChunkSize = characters * kBytesPerCharacter;
}

Text CStringBuilder::ToString() const& { return sBuffer; }

Text CStringBuilder::ToString() && {
  lCapacity = 0;
  return std::exchange(sBuffer, {});
}

void CStringBuilder::Reserve(std::size_t characters) { sBuffer.reserve(characters); }

void CStringBuilder::TheString(TextView text) {
  RequireFit(0, text.size());
  if (text.empty()) {
    sBuffer = {};
    lCapacity = 0;
    return;
  }
  sBuffer.assign(text);
  Hold(text.size());
}

void CStringBuilder::Append(TextView text) {
  RequireFit(sBuffer.size(), text.size());
  sBuffer.append(text);
  Hold(sBuffer.size());
}

void CStringBuilder::AppendByVal(TextView text) { Append(text); }

void CStringBuilder::AppendBlanks(std::int32_t count) {
  if (count <= 0) return;
  const auto blanks = static_cast<std::size_t>(count);
  RequireFit(sBuffer.size(), blanks);
  sBuffer.append(blanks, u' ');
  Hold(sBuffer.size());
}

void CStringBuilder::Insert(std::int32_t index, TextView text) {
  RequireInRange(index >= 0 && index <= Length(), u"Insert");
  RequireFit(sBuffer.size(), text.size());
  sBuffer.insert(static_cast<std::size_t>(index), text);
  Hold(sBuffer.size());
}

void CStringBuilder::InsertByVal(std::int32_t index, TextView text) { Insert(index, text); }

void CStringBuilder::Remove(std::int32_t index, std::int32_t length) {
  RequireInRange(index >= 0 && index <= Length() && length >= 0, u"Remove");
  sBuffer.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(length));
}

std::int32_t CStringBuilder::Find(TextView toFind, std::int32_t startIndex, Compare compare) const {
  RequireInRange(startIndex >= 0 && startIndex <= Length(), u"Find");
  const TextView searched = TextView(sBuffer).substr(static_cast<std::size_t>(startIndex));
  const std::size_t at = compare == Compare::kText ? LowerCase(searched).find(LowerCase(toFind))
                                                   : searched.find(toFind);
  return at == TextView::npos ? -1 : startIndex + static_cast<std::int32_t>(at);
}

void CStringBuilder::HeapMinimize() {
  const std::int32_t unused = lCapacity - Length() * kBytesPerCharacter;
  if (unused <= lChunkSize) return;
  lCapacity -= unused / lChunkSize * lChunkSize;
  sBuffer.shrink_to_fit();
}

// Adds as many chunks as the text needs; the last one ends at the greatest size there is.
void CStringBuilder::Hold(std::size_t characters) {
  const std::int64_t needed = static_cast<std::int64_t>(characters) * kBytesPerCharacter;
  if (needed <= lCapacity) return;
  const std::int64_t steps = (needed - lCapacity + lChunkSize - 1) / lChunkSize;
  const std::int64_t grown = lCapacity + steps * lChunkSize;
  constexpr std::int64_t kMost = std::int64_t{kMostCharacters} * kBytesPerCharacter;
  lCapacity = static_cast<std::int32_t>(grown < kMost ? grown : kMost);
}

}  // namespace ostrel
