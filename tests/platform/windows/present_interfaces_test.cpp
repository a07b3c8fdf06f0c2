#include "platform/windows/present_interfaces.h"

#include <gmock/gmock.h>

#include "tests/platform/windows/own_setupapi.h"

namespace qlx::platform {
namespace {

using testing::Detail;
using ::testing::ElementsAre;
using testing::interface_list;
using ::testing::IsEmpty;

constexpr GUID kClass = {0x1, 0x2, 0x3, {4, 5, 6, 7, 8, 9, 10, 11}};

class ListedInterfaces : public ::testing::Test {
 protected:
  ListedInterfaces() { interface_list = {}; }

  bool Walk() {
    paths_.clear();
    return WalkPresentInterfaces(kClass, [this](const std::wstring& path) { paths_.push_back(path); });
  }

  std::vector<std::wstring> paths_;
};

TEST_F(ListedInterfaces, AreToldInTheirOrderAndSpelling) {
  interface_list.interfaces = {{L"\\\\?\\b\\MZP_COM10"}, {L"\\\\?\\A\\mzp_com9"}, {L""}};
  EXPECT_TRUE(Walk());
  EXPECT_THAT(paths_, ElementsAre(L"\\\\?\\b\\MZP_COM10", L"\\\\?\\A\\mzp_com9", L""));
  EXPECT_TRUE(IsEqualGUID(interface_list.of_class, kClass));
  EXPECT_EQ(interface_list.destroyed, 1);
}

TEST_F(ListedInterfaces, AreLeftOutWhosePathCannotBeLearned) {
  interface_list.interfaces = {{L"one"},
                               {L"two", Detail::kSizeGivenAtOnce},
                               {L"three", Detail::kSizeRefused},
                               {L"four", Detail::kTooShort},
                               {L"five", Detail::kPathRefused},
                               {L"six"}};
  EXPECT_TRUE(Walk());
  EXPECT_THAT(paths_, ElementsAre(L"one", L"six"));
}

TEST_F(ListedInterfaces, MayEndBadlyWithWhatWasFoundUntilThen) {
  interface_list.interfaces = {{L"one"}};
  interface_list.end = ERROR_INVALID_HANDLE;
  EXPECT_FALSE(Walk());
  EXPECT_THAT(paths_, ElementsAre(L"one"));
  EXPECT_EQ(interface_list.destroyed, 1);
}

TEST_F(ListedInterfaces, AreNoneWhenTheClassCannotBeOpened) {
  interface_list.opens = false;
  interface_list.interfaces = {{L"one"}};
  EXPECT_FALSE(Walk());
  EXPECT_THAT(paths_, IsEmpty());
  EXPECT_EQ(interface_list.destroyed, 0);
}

}  // namespace
}  // namespace qlx::platform
