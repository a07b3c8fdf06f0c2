#include "ports/list_changes.h"

#include <gmock/gmock.h>

namespace qlx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum ListChange::Kind;

TEST(ListChanges, EqualListsNeedNone) {
  EXPECT_THAT(ChangesBetween({L"a", L"b"}, {L"a", L"b"}), IsEmpty());
}

TEST(ListChanges, WhatComesIsInsertedInItsPlace) {
  EXPECT_THAT(ChangesBetween({L"b"}, {L"a", L"b", L"c"}),
              ElementsAre(ListChange{kInsert, 0, L"a"}, ListChange{kInsert, 2, L"c"}));
}

TEST(ListChanges, WhatGoesIsDeletedAndTheRestIsLeftAlone) {
  EXPECT_THAT(ChangesBetween({L"a", L"b", L"c", L"d"}, {L"b", L"d"}),
              ElementsAre(ListChange{kDelete, 0}, ListChange{kDelete, 1}));
  EXPECT_THAT(ChangesBetween({L"a", L"b", L"c"}, {L"a"}),
              ElementsAre(ListChange{kDelete, 1}, ListChange{kDelete, 1}));
}

TEST(ListChanges, AnExchangedItemIsInsertedBeforeTheOldOneGoes) {
  EXPECT_THAT(ChangesBetween({L"a", L"b"}, {L"x", L"b"}),
              ElementsAre(ListChange{kInsert, 0, L"x"}, ListChange{kDelete, 1}));
}

/// The steps done one after the other.
std::vector<std::wstring> Applied(std::vector<std::wstring> list, const std::vector<ListChange>& changes) {
  for (const ListChange& change : changes) {
    const auto place = list.begin() + static_cast<std::ptrdiff_t>(change.at);
    if (change.kind == kInsert) {
      list.insert(place, change.text);
    } else {
      list.erase(place);
    }
  }
  return list;
}

TEST(ListChanges, TheStepsLeadFromAnyListToAnyOther) {
  const std::vector<std::vector<std::wstring>> lists = {
      {},           {L"a"},       {L"b", L"a"},       {L"a", L"b", L"c"},
      {L"", L""},   {L"", L"a"},  {L"c", L"b", L"a"}, {L"a", L"", L"b", L""},
      {L"x", L"a"}, {L"a", L"x"}, {L"a", L"a", L"a"},
  };
  for (const auto& from : lists) {
    for (const auto& to : lists) EXPECT_EQ(Applied(from, ChangesBetween(from, to)), to);
  }
}

}  // namespace
}  // namespace qlx
