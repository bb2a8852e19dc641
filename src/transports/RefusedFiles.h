// The request files that could not be taken and wait where they are, and what has been told of
// them: each reason is told once a file.
#pragma once

#include <map>
#include <set>
#include <vector>

#include "util/Text.h"

namespace ostrel {

class RefusedFiles {
 public:
  bool Contains(const Text& name) const { return oReasons.contains(name); }
  /// True when this reason has not been told of this file.
  bool Add(const Text& name, TextView reason) { return oReasons[name].emplace(reason).second; }
  void AddUntold(const Text& name) { oReasons[name]; }
  /// False when the file was none of them.
  bool Remove(const Text& name) { return oReasons.erase(name) > 0; }
  /// Forgets the files that are not among these.
  void KeepOnly(const std::vector<Text>& names, const std::vector<Text>& unreachable) {
    if (oReasons.empty()) return;
    std::set<TextView> present(names.begin(), names.end());
    present.insert(unreachable.begin(), unreachable.end());
    std::erase_if(oReasons, [&](const auto& entry) { return !present.contains(entry.first); });
  }
  void Clear() { oReasons.clear(); }

 private:
  std::map<Text, std::set<Text>> oReasons;
};

}  // namespace ostrel
