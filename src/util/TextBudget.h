// The memory that the texts of all clients may take together: requests while they arrive, responses
// until the network has taken them. Whoever holds such a text holds a share of its size; a share
// that would pass the limit is refused, so that no number of clients takes the program's memory.
#pragma once

#include <cstddef>

namespace ostrel {

class TextBudget {
 public:
  class Share;

  /// In bytes: 1 GiB, or half of it where the address space is small.
  static constexpr std::size_t kUsualLimit = std::size_t{sizeof(void*) == 4 ? 512U : 1024U} << 20;

  std::size_t Limit() const { return lLimit; }
  void SetLimit(std::size_t bytes) { lLimit = bytes; }
  /// The bytes of all shares.
  std::size_t Held() const { return lHeld; }

 private:
  std::size_t lLimit = kUsualLimit;
  std::size_t lHeld = 0;
};

/// The process's own.
TextBudget& ProcessTextBudget();

/// A part of the process's budget; given back when it goes.
class TextBudget::Share {
 public:
  Share() = default;
  ~Share() { Release(); }
  Share(Share&& other) noexcept;
  Share& operator=(Share&& other) noexcept;
  Share(const Share&) = delete;
  Share& operator=(const Share&) = delete;

  std::size_t Size() const { return lSize; }
  /// Raises std::bad_alloc, the share unchanged, when the budget would be passed.
  void Resize(std::size_t bytes);
  void Release() noexcept;

 private:
  std::size_t lSize = 0;
};

}  // namespace ostrel
