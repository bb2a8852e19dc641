// The files of a folder that match a pattern, as they were when it was last looked at, less those
// that have been taken out since. Whoever takes many files one by one has each listing again only
// after ten times as long as it took: the folder may hold any number.
#pragma once

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

#include "platform/FileSystem.h"
#include "util/Text.h"

namespace ostrel {

class FileList {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// Nothing is listed before the next Refresh.
  void SetFolder(Text folder, Text pattern) {
    sFolder = std::move(folder);
    sPattern = std::move(pattern);
    SetNames({});
  }
  void Refresh() {
    const TimePoint begin = Now();
    SetNames(ListFiles(sFolder, sPattern, &sUnreachable));
    const TimePoint end = Now();
    oNextListing = end + kListingsShare * (end - begin);
  }
  /// The file at this index has gone. Not in front of an index that was removed since the listing.
  void Remove(std::size_t index) {
    const std::size_t position = index + iRemoved++;
    if (position == iFirst) ++iFirst;
    if (Count() == 0 || Now() >= oNextListing) Refresh();
  }

  const Text& Folder() const { return sFolder; }
  /// As they were listed, in alphabetical order.
  const std::vector<Text>& Names() const { return sNames; }
  /// Those that match but cannot be opened under any path.
  const std::vector<Text>& Unreachable() const { return sUnreachable; }

  /// Those that are left.
  std::size_t Count() const { return sNames.size() - iRemoved; }
  /// Not in front of an index that was removed since the listing.
  const Text& At(std::size_t index) const { return sNames[index + iRemoved]; }
  /// The first that is left; there must be one.
  const Text& First() const { return sNames[iFirst]; }

  std::function<TimePoint()> Now = std::chrono::steady_clock::now;
  std::function<std::vector<Text>(TextView, TextView, std::vector<Text>*)> ListFiles =
      platform::ListFiles;

 private:
  static constexpr int kListingsShare = 10;

  void SetNames(std::vector<Text> names) {
    sNames = std::move(names);
    iRemoved = iFirst = 0;
  }

  Text sFolder, sPattern;
  std::vector<Text> sNames, sUnreachable;
  std::size_t iRemoved = 0;
  std::size_t iFirst = 0;  // position of the first that is left
  TimePoint oNextListing;
};

}  // namespace ostrel
