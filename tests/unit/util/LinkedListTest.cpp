#include <gtest/gtest.h>

#include "tests/support/RaisedError.h"
#include "util/LinkedList.h"
#include "util/RunTimeError.h"

namespace ostrel {
namespace {

using Value = LinkedList::Value;

std::vector<std::int32_t> IndicesInOrder(LinkedList& list) {
  std::vector<std::int32_t> indices;
  for (list.MoveFirst(); !list.EOL(); list.MoveNext()) indices.push_back(list.CurrIndex());
  return indices;
}

std::vector<std::int32_t> IndicesBackwards(LinkedList& list) {
  std::vector<std::int32_t> indices;
  for (list.MoveLast(); list.CurrIndex() != 0; list.MovePrevious()) {
    indices.push_back(list.CurrIndex());
  }
  return indices;
}

using Indices = std::vector<std::int32_t>;

LinkedList ListOf(std::initializer_list<Value> values) {
  LinkedList list;
  for (const Value& value : values) list.Add(value);
  return list;
}

TEST(LinkedList, NumbersItsNodesFromOne) {
  LinkedList list;

  const Indices added = {list.Add(10), list.Add(20), list.Add(30)};

  EXPECT_EQ(added, (Indices{1, 2, 3}));
  EXPECT_EQ(list.Count(), 3);
}

TEST(LinkedList, GivesARemovedIndexToTheNextNodeWhichIsLastInOrder) {
  LinkedList list = ListOf({10, 20, 30});

  list.Remove(2);
  const std::int32_t added = list.Add(40);

  EXPECT_EQ(added, 2);
  EXPECT_EQ(IndicesInOrder(list), (Indices{1, 3, 2}));
  EXPECT_EQ(IndicesBackwards(list), (Indices{2, 3, 1}));
}

TEST(LinkedList, GrowsWithTheHundredAndFirstNode) {
  LinkedList list;
  for (int i = 1; i <= 100; ++i) list.Add(i);

  EXPECT_EQ(list.Add(101), 101);

  EXPECT_EQ(list.Item(101), Value(101));
  EXPECT_EQ(list.Item(1), Value(1));
}

TEST(LinkedList, PutsANodeInFrontOfTheFirst) {
  LinkedList list = ListOf({10, 20});

  const std::int32_t added = list.Add(5, 1);

  EXPECT_EQ(IndicesInOrder(list), (Indices{added, 1, 2}));
  EXPECT_EQ(IndicesBackwards(list), (Indices{2, 1, added}));
}

TEST(LinkedList, PutsANodeBetweenTwo) {
  LinkedList list = ListOf({10, 20});

  const std::int32_t before = list.Add(15, 2);
  const std::int32_t after = list.Add(17, 0, before);

  EXPECT_EQ(IndicesInOrder(list), (Indices{1, before, after, 2}));
  EXPECT_EQ(IndicesBackwards(list), (Indices{2, after, before, 1}));
}

TEST(LinkedList, PutsANodeBehindTheLast) {
  LinkedList list = ListOf({10});

  const std::int32_t added = list.Add(20, 0, 1);

  list.MoveLast();
  EXPECT_EQ(list.CurrIndex(), added);
}

TEST(LinkedList, TakesANegativeBeforeForTheFirstNode) {
  LinkedList list;

  const std::int32_t onEmpty = list.Add(10, -1);
  const std::int32_t added = list.Add(5, -7);

  EXPECT_EQ(IndicesInOrder(list), (Indices{added, onEmpty}));
}

TEST(LinkedList, PrefersBeforeToAfter) {
  LinkedList list = ListOf({10, 20, 30});

  const std::int32_t added = list.Add(5, 1, 3);

  EXPECT_EQ(IndicesInOrder(list), (Indices{added, 1, 2, 3}));
}

TEST(LinkedList, RefusesToInsertBesideANodeThatIsNone) {
  LinkedList list = ListOf({10});

  EXPECT_EQ(ErrorOf([&] { list.Add(20, 2); }), 5);
  EXPECT_EQ(ErrorOf([&] { list.Add(20, 0, 999); }), 5);

  EXPECT_EQ(list.Count(), 1);
  EXPECT_EQ(list.Add(20), 2);
}

TEST(LinkedList, RaisesErrorFiveWithoutSourceOrDescription) {
  const LinkedList list = ListOf({10});

  for (const std::int32_t index : {-1, 0, 2, 100, 101}) {
    try {
      list.CheckIndex(index);
      ADD_FAILURE() << "index " << index << " was accepted";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number, 5);
      EXPECT_EQ(error.Source, u"");
      EXPECT_EQ(error.Description, u"");
    }
  }
}

TEST(LinkedList, RaisesErrorFiveWithoutACurrentNode) {
  LinkedList list = ListOf({10});

  EXPECT_EQ(ErrorOf([&] { list.Item(); }), 5);
  EXPECT_EQ(ErrorOf([&] { list.Item(0, 1); }), 5);
  EXPECT_EQ(ErrorOf([&] { list.ExtraData(); }), 5);
  EXPECT_EQ(ErrorOf([&] { list.ExtraData(0, 1); }), 5);
  EXPECT_EQ(ErrorOf([&] { list.Remove(); }), 5);
  EXPECT_EQ(ErrorOf([&] { list.Move(0); }), 5);
}

TEST(LinkedList, RemovesFirstLastAndOnlyNodes) {
  LinkedList list = ListOf({10, 20, 30, 40});

  list.Remove(1);
  list.Remove(4);
  const Indices middle = IndicesInOrder(list);
  list.Remove(2);
  list.Remove(3);

  EXPECT_EQ(middle, (Indices{2, 3}));
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(IndicesInOrder(list), Indices{});
  EXPECT_EQ(ErrorOf([&] { list.Remove(2); }), 5);
}

TEST(LinkedList, MovesOnWhenTheCurrentNodeIsRemoved) {
  LinkedList list = ListOf({10, 20, 30});

  list.Move(2);
  list.Remove();
  const std::int32_t next = list.CurrIndex();
  list.Remove(3);

  EXPECT_EQ(next, 3);
  EXPECT_EQ(list.CurrIndex(), 0);
}

TEST(LinkedList, KeepsItsPlaceWhenAnotherNodeIsRemoved) {
  LinkedList list = ListOf({10, 20, 30});

  list.Move(2);
  list.Remove(1);

  EXPECT_EQ(list.CurrIndex(), 2);
}

TEST(LinkedList, ForgetsTheValuesOfARemovedNode) {
  LinkedList list = ListOf({10});
  auto object = std::make_shared<int>(1);
  list.Item(1, std::shared_ptr<void>(object));
  list.ExtraData(1, std::shared_ptr<void>(object));

  list.Remove(1);
  list.Add(20);

  EXPECT_EQ(object.use_count(), 1);
  EXPECT_EQ(list.ExtraData(1), Value());
}

TEST(LinkedList, KeepsTwoValuesANode) {
  LinkedList list = ListOf({10});

  list.Item(1, Text(u"item"));
  list.Move(1);
  list.ExtraData(0, 2.5);

  EXPECT_EQ(list.Item(), Value(Text(u"item")));
  EXPECT_EQ(list.ExtraData(1), Value(2.5));
}

TEST(LinkedList, TellsItsEndsByTheDirectionOfTheLastStep) {
  LinkedList list = ListOf({10});

  list.MoveFirst();
  EXPECT_FALSE(list.BOL() || list.EOL());
  list.MoveNext();
  EXPECT_TRUE(list.EOL() && !list.BOL());
  list.MoveLast();
  list.MovePrevious();
  EXPECT_TRUE(list.BOL() && !list.EOL());
}

TEST(LinkedList, IsAtBothEndsWhenEmpty) {
  const LinkedList list;

  EXPECT_TRUE(list.BOL());
  EXPECT_TRUE(list.EOL());
}

TEST(LinkedList, StaysNowhereWhenItStepsFromNowhere) {
  LinkedList list = ListOf({10});

  list.MoveNext();
  list.MovePrevious();

  EXPECT_EQ(list.CurrIndex(), 0);
}

TEST(LinkedList, FindsNothingAndLosesItsPlace) {
  LinkedList list = ListOf({10, 20});
  list.Move(1);

  EXPECT_EQ(list.Find(99), 0);

  EXPECT_EQ(list.CurrIndex(), 0);
}

TEST(LinkedList, MovesToWhatItFinds) {
  LinkedList list = ListOf({10, 20});

  EXPECT_EQ(list.Find(20), 2);

  EXPECT_EQ(list.CurrIndex(), 2);
}

TEST(LinkedList, SearchesFromTheCurrentNodeItself) {
  LinkedList list = ListOf({7, 7, 7});
  list.Move(2);

  EXPECT_EQ(list.Find(7, LinkedList::kEqual, 0), 2);
}

TEST(LinkedList, SearchesBehindAGivenNode) {
  LinkedList list = ListOf({7, 7, 7});

  EXPECT_EQ(list.Find(7, LinkedList::kEqual, 1), 2);
  EXPECT_EQ(list.Find(7, LinkedList::kEqual, 3), 0);
  EXPECT_EQ(ErrorOf([&] { list.Find(7, LinkedList::kEqual, 4); }), 5);
}

TEST(LinkedList, SearchesBackwards) {
  LinkedList list = ListOf({7, 8, 7});

  EXPECT_EQ(list.Find(7, LinkedList::kEqual, -1, true), 3);
  EXPECT_EQ(list.Find(7, LinkedList::kEqual, 3, true), 1);
  EXPECT_EQ(list.Find(8, LinkedList::kEqual, 0, true), 0);
}

struct Comparison {
  Value searched;
  std::int32_t condition;
  Value item;
  bool matches;
};

class LinkedListConditions : public testing::TestWithParam<Comparison> {};

TEST_P(LinkedListConditions, Match) {
  LinkedList list = ListOf({GetParam().item});

  const std::int32_t found = list.Find(GetParam().searched, GetParam().condition);

  EXPECT_EQ(found, GetParam().matches ? 1 : 0);
}

Value T(TextView text) { return Text(text); }

INSTANTIATE_TEST_SUITE_P(
    All, LinkedListConditions,
    testing::Values(
        Comparison{5, 0, 5, true}, Comparison{5, 0, 6, false}, Comparison{5, 0, 5.0, true},
        Comparison{5, 1, 6, true}, Comparison{5, 1, 5, false}, Comparison{5, 2, 6, true},
        Comparison{5, 2, 5, false}, Comparison{5, 3, 5, true}, Comparison{5, 3, 4.5, false},
        Comparison{5, 4, 4.5, true}, Comparison{5, 4, 5, false}, Comparison{5, 5, 5, true},
        Comparison{5, 5, 6, false}, Comparison{5, 7, 5, false}, Comparison{5, -1, 5, false},
        Comparison{T(u"b"), 0, T(u"b"), true}, Comparison{T(u"B"), 0, T(u"b"), false},
        Comparison{T(u"B"), 2, T(u"b"), true}, Comparison{T(u"b"), 4, T(u"abc"), true},
        Comparison{9, 2, T(u"1"), true}, Comparison{T(u"1"), 4, 9, true},
        Comparison{T(u"9"), 0, 9, false}, Comparison{Value(), 0, 0, true},
        Comparison{Value(), 0, T(u""), true}, Comparison{Value(), 0, Value(), true},
        Comparison{T(u"ell"), 6, T(u"Hello"), true}, Comparison{T(u"Hello"), 6, T(u"ell"), false},
        Comparison{23, 6, 1234, true}, Comparison{T(u"2.5"), 6, 12.5, true}));

TEST(LinkedList, FindsObjectsByIdentityOnly) {
  const std::shared_ptr<void> mine = std::make_shared<int>(1);
  const std::shared_ptr<void> other = std::make_shared<int>(1);
  LinkedList list = ListOf({10, mine, other});

  EXPECT_EQ(list.Find(mine), 2);
  EXPECT_EQ(list.Find(other), 3);
  EXPECT_EQ(list.Find(mine, LinkedList::kNotEqual), 1);
  EXPECT_EQ(list.Find(mine, LinkedList::kNotEqual, 1), 3);
  EXPECT_EQ(list.Find(mine, LinkedList::kLessOrEqual), 0);
}

TEST(LinkedList, NeverMatchesAnObjectWithAPlainValue) {
  const std::shared_ptr<void> object = std::make_shared<int>(1);
  LinkedList list = ListOf({object});

  for (std::int32_t condition = 0; condition <= 6; ++condition) {
    EXPECT_EQ(list.Find(1, condition), 0) << condition;
  }
}

TEST(LinkedList, RemovesTheNodeWithAKey) {
  LinkedList list = ListOf({10, 20, 20});

  list.RemoveByKey(20);
  list.RemoveByKey(99);

  EXPECT_EQ(IndicesInOrder(list), (Indices{1, 3}));
}

TEST(LinkedList, MakesRoomAndGrowsByTheSizeItIsTold) {
  LinkedList list;

  list.SetSize(200, 50);
  for (int i = 1; i <= 260; ++i) list.Add(i);

  EXPECT_EQ(list.Count(), 260);
  EXPECT_EQ(IndicesInOrder(list).size(), 260u);
}

TEST(LinkedList, KeepsItsNodesWhateverSizeItIsTold) {
  LinkedList list;

  for (int i = 1; i <= 260; ++i) {
    list.Add(i);
    list.SetSize(i - 20, 10);
    list.SetSize(i, 10);
  }

  const auto indices = IndicesInOrder(list);
  ASSERT_EQ(indices.size(), 260u);
  for (int i = 1; i <= 260; ++i) {
    EXPECT_EQ(std::get<std::int32_t>(list.Item(indices[static_cast<std::size_t>(i) - 1])), i);
  }
}

TEST(LinkedList, CountsOnAfterRemoveAll) {
  // Kept: emptying drops the values but not count, ends and current position.
  LinkedList list = ListOf({10, 20, 30});
  list.Move(2);

  list.RemoveAll();

  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(list.CurrIndex(), 2);
  EXPECT_EQ(ErrorOf([&] { list.CheckIndex(2); }), 5);
  list.MoveLast();
  EXPECT_EQ(list.CurrIndex(), 3);
  EXPECT_EQ(list.Add(40), 1);
  EXPECT_EQ(list.Count(), 4);
}

TEST(LinkedList, DropsItsValuesWithRemoveAll) {
  auto object = std::make_shared<int>(1);
  LinkedList list = ListOf({std::shared_ptr<void>(object)});

  list.RemoveAll();

  EXPECT_EQ(object.use_count(), 1);
}

TEST(LinkedList, EndsASearchThatRunsInACircleAfterRemoveAll) {
  LinkedList list = ListOf({10, 20, 30});

  list.RemoveAll();

  EXPECT_EQ(list.Find(99), 0);
}

TEST(LinkedList, RaisesAnErrorForEndsThatRemoveAllHasCutOff) {
  LinkedList list;
  for (int i = 1; i <= 150; ++i) list.Add(i);

  list.RemoveAll();

  EXPECT_EQ(ErrorOf([&] { list.Add(1); }), 9);
}

}  // namespace
}  // namespace ostrel
