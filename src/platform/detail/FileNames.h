// Patterns and the order of file names in a listing, the same on every system. For the twins of
// FileSystem.cpp only.
#pragma once

#include <algorithm>
#include <vector>

#include "util/Text.h"

namespace ostrel::platform {

/// Text's letter case, for one character at a time.
inline char16_t LowerLetter(char16_t c) {
  if (c >= 0x80) return LowerCase(TextView(&c, 1)).front();
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
}

/// Ignores case. "*" stands for any run of characters, "?" for one. After a
/// mismatch only the last "*" is tried again, so the time is bounded by the product of the lengths.
inline bool MatchesPattern(TextView name, TextView pattern) {
  std::size_t n = 0, p = 0;
  std::size_t star = TextView::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() &&
               (pattern[p] == u'?' || LowerLetter(pattern[p]) == LowerLetter(name[n]))) {
      ++p;
      ++n;
    } else if (star != TextView::npos) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', p) == TextView::npos;
}

/// Alphabetical order ignoring case; names that differ in nothing else have an order, too.
inline bool ComesBefore(TextView a, TextView b) {
  const auto [atA, atB] = std::mismatch(
      a.begin(), a.end(), b.begin(), b.end(),
      [](char16_t one, char16_t other) { return LowerLetter(one) == LowerLetter(other); });
  if (atA == a.end() && atB == b.end()) return a < b;
  if (atA == a.end() || atB == b.end()) return atA == a.end();
  return LowerLetter(*atA) < LowerLetter(*atB);
}

/// Keeps the names that match the pattern, in alphabetical order.
inline std::vector<Text> SelectNames(std::vector<Text> names, TextView pattern) {
  std::erase_if(names, [&](const Text& name) { return !MatchesPattern(name, pattern); });
  std::sort(names.begin(), names.end(), ComesBefore);
  return names;
}

}  // namespace ostrel::platform
