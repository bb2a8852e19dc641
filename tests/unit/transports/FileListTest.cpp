#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "transports/FileList.h"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class FileListTest : public testing::Test {
 protected:
  FileListTest() {
    List.SetFolder(u"folder", u"*.osl");
    List.Now = [this] { return oNow; };
    List.ListFiles = [this](TextView, TextView, std::vector<Text>*) {
      ++iListings;
      oNow += 2ms;
      return Present;
    };
    List.Refresh();
  }

  std::vector<Text> Left() const {
    std::vector<Text> names;
    for (std::size_t i = 0; i < List.Count(); ++i) names.push_back(List.At(i));
    return names;
  }

  std::vector<Text> Present = {u"a", u"b", u"c", u"d"};
  FileList::TimePoint oNow;
  int iListings = 0;
  FileList List;
};

TEST_F(FileListTest, KnowsWhatIsLeftWithoutListingAnew) {
  List.Remove(0);

  EXPECT_THAT(Left(), ElementsAre(u"b", u"c", u"d"));
  EXPECT_EQ(List.First(), u"b");
  EXPECT_EQ(iListings, 1);
}

TEST_F(FileListTest, SkipsOneWithEachStepOfOneWhoTakes) {
  List.Remove(0);
  EXPECT_EQ(List.At(1), u"c");

  List.Remove(1);

  EXPECT_EQ(List.Count(), 2u);
  EXPECT_EQ(List.First(), u"b");
}

TEST_F(FileListTest, TheFirstStaysWhenALaterOneGoes) {
  List.Remove(2);

  EXPECT_EQ(List.First(), u"a");
  EXPECT_EQ(List.At(2), u"d");
}

TEST_F(FileListTest, ListsAnewAfterTenTimesAsLongAsThatTook) {
  Present = {u"new"};
  oNow += 20ms - 1ns;
  List.Remove(0);
  const int before = iListings;

  oNow += 1ns;
  List.Remove(0);

  EXPECT_EQ(before, 1);
  EXPECT_THAT(Left(), ElementsAre(u"new"));
  EXPECT_EQ(List.First(), u"new");
}

TEST_F(FileListTest, ListsAnewWhenNothingIsLeft) {
  for (int i = 0; i < 3; ++i) List.Remove(0);
  Present = {u"new"};

  List.Remove(0);

  EXPECT_THAT(Left(), ElementsAre(u"new"));
}

TEST_F(FileListTest, AnotherFolderIsNotListedYet) {
  List.Remove(0);

  List.SetFolder(u"other", u"*.osl");

  EXPECT_EQ(List.Count(), 0u);
}

}  // namespace
}  // namespace ostrel
