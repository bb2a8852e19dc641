// Sets the process's budget of texts for as long as it lives.
#pragma once

#include "util/TextBudget.h"

namespace ostrel {

class TextBudgetLimit {
 public:
  explicit TextBudgetLimit(std::size_t bytes) { ProcessTextBudget().SetLimit(bytes); }
  ~TextBudgetLimit() { ProcessTextBudget().SetLimit(TextBudget::kUsualLimit); }
  TextBudgetLimit(const TextBudgetLimit&) = delete;
  TextBudgetLimit& operator=(const TextBudgetLimit&) = delete;
};

}  // namespace ostrel
