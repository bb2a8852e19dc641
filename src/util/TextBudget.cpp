#include "util/TextBudget.h"

#include <new>
#include <utility>

namespace ostrel {

TextBudget& ProcessTextBudget() {
  static TextBudget budget;
  return budget;
}

TextBudget::Share::Share(Share&& other) noexcept : lSize(std::exchange(other.lSize, 0)) {}

TextBudget::Share& TextBudget::Share::operator=(Share&& other) noexcept {
  if (this != &other) {
    Release();
    lSize = std::exchange(other.lSize, 0);
  }
  return *this;
}

void TextBudget::Share::Resize(std::size_t bytes) {
  TextBudget& budget = ProcessTextBudget();
  const std::size_t others = budget.lHeld - lSize;
  const bool passes = bytes > budget.lLimit || others > budget.lLimit - bytes;
  if (bytes > lSize && passes) throw std::bad_alloc();
  budget.lHeld = others + bytes;
  lSize = bytes;
}

void TextBudget::Share::Release() noexcept { ProcessTextBudget().lHeld -= std::exchange(lSize, 0); }

}  // namespace ostrel
