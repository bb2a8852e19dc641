// Patterns and the order of file names in a listing, the same on every system. For the twins of
// FileSystem.cpp only.
#pragma once

#include <algorithm>
#include <vector>

#include "util/Text.h"

namespace ostrel::platform {

/// Expects both in one letter case. "*" stands for any run of characters, "?" for one. After a
/// mismatch only the last "*" is tried again, so the time is bounded by the product of the lengths.
inline bool MatchesPattern(TextView name, TextView pattern) {
  std::size_t n = 0, p = 0;
  std::size_t star = TextView::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
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

/// Keeps the names that match the pattern, in alphabetical order, both ignoring case.
inline std::vector<Text> SelectNames(const std::vector<Text>& names, TextView pattern) {
  struct Entry {
    Text key, name;
  };
  const Text lowerPattern = LowerCase(pattern);
  std::vector<Entry> entries;
  for (const Text& name : names) {
    Text key = LowerCase(name);
    if (MatchesPattern(key, lowerPattern)) entries.push_back({std::move(key), name});
  }
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.key != b.key ? a.key < b.key : a.name < b.name;
  });

  std::vector<Text> selected;
  selected.reserve(entries.size());
  for (Entry& entry : entries) selected.push_back(std::move(entry.name));
  return selected;
}

}  // namespace ostrel::platform
