#include "platform/linux/report_descriptor.h"

#include <ostream>
#include <random>

#include <gmock/gmock.h>

namespace qlx::platform {

static std::ostream& operator<<(std::ostream& out, const HidUsage& usage) {
  return out << std::hex << usage.page << ':' << usage.usage;
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Bytes = std::vector<std::uint8_t>;

// Items by name, so that a descriptor reads as what it says.
Bytes Page(std::uint16_t page) {
  return {0x06, static_cast<std::uint8_t>(page), static_cast<std::uint8_t>(page >> 8)};
}
Bytes Usage(std::uint16_t usage) {
  return {0x0A, static_cast<std::uint8_t>(usage), static_cast<std::uint8_t>(usage >> 8)};
}
const Bytes kApplication = {0xA1, 0x01};
const Bytes kLogical = {0xA1, 0x02};
const Bytes kEnd = {0xC0};
const Bytes kInput = {0x81, 0x02};
const Bytes kPush = {0xA4};
const Bytes kPop = {0xB4};

Bytes Join(std::initializer_list<Bytes> items) {
  Bytes all;
  for (const Bytes& item : items) all.insert(all.end(), item.begin(), item.end());
  return all;
}

TEST(ReportDescriptor, TheApplicationCollectionBearsPageAndUsage) {
  const Bytes one = Join({Page(0xFF45), Usage(0x5400), kApplication, kInput, kEnd});
  EXPECT_THAT(TopLevelUsages(one), ElementsAre(HidUsage{0xFF45, 0x5400}));
}

TEST(ReportDescriptor, EachTopLevelCollectionIsTold) {
  const Bytes two = Join(
      {Page(0xFF45), Usage(0x2600), kApplication, kInput, kEnd, Usage(0x1600), kApplication, kInput, kEnd});
  EXPECT_THAT(TopLevelUsages(two), ElementsAre(HidUsage{0xFF45, 0x2600}, HidUsage{0xFF45, 0x1600}));
}

TEST(ReportDescriptor, NestedCollectionsAreNotTold) {
  const Bytes nested = Join({Page(0xFF45), Usage(0x2400), kApplication, Usage(0x2500), kApplication, kEnd,
                             Usage(0x2600), kLogical, kEnd, kEnd});
  EXPECT_THAT(TopLevelUsages(nested), ElementsAre(HidUsage{0xFF45, 0x2400}));
}

TEST(ReportDescriptor, ATopLevelCollectionThatIsNoApplicationIsNotTold) {
  EXPECT_THAT(TopLevelUsages(Join({Page(0xFF45), Usage(0x2400), kLogical, kEnd})), IsEmpty());
}

TEST(ReportDescriptor, AUsageOfFourBytesCarriesItsPage) {
  const Bytes extended = Join({Page(1), {0x0B, 0x00, 0x54, 0x45, 0xFF}, kApplication, kEnd});
  EXPECT_THAT(TopLevelUsages(extended), ElementsAre(HidUsage{0xFF45, 0x5400}));
}

TEST(ReportDescriptor, PageAndUsageOfOneByteCount) {
  EXPECT_THAT(TopLevelUsages(Bytes{0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0xC0}), ElementsAre(HidUsage{1, 6}));
}

TEST(ReportDescriptor, ThePageThatIsInForceAtTheCollectionCounts) {
  const Bytes late = Join({Page(1), Usage(0x5400), Page(0xFF45), kApplication, kEnd});
  EXPECT_THAT(TopLevelUsages(late), ElementsAre(HidUsage{0xFF45, 0x5400}));
}

TEST(ReportDescriptor, TheFirstUsageBeforeACollectionCountsAndIsUsedUp) {
  const Bytes several = Join({Page(2), Usage(1), Usage(9), kApplication, kEnd, kApplication, kEnd});
  EXPECT_THAT(TopLevelUsages(several), ElementsAre(HidUsage{2, 1}));
}

TEST(ReportDescriptor, PushAndPopKeepThePage) {
  const Bytes pushed =
      Join({Page(7), kPush, Page(8), Usage(1), kApplication, kEnd, kPop, Usage(2), kApplication, kEnd});
  EXPECT_THAT(TopLevelUsages(pushed), ElementsAre(HidUsage{8, 1}, HidUsage{7, 2}));
}

TEST(ReportDescriptor, LongItemsArePassedOver) {
  const Bytes with_long = Join({Page(7), {0xFE, 0x02, 0x99, 0xA1, 0x01}, Usage(1), kApplication, kEnd});
  EXPECT_THAT(TopLevelUsages(with_long), ElementsAre(HidUsage{7, 1}));
}

TEST(ReportDescriptor, EndsAndPopsWithoutBeginningDoNothing) {
  const Bytes odd = Join({kEnd, kEnd, kPop, Page(7), Usage(1), kApplication, kEnd});
  EXPECT_THAT(TopLevelUsages(odd), ElementsAre(HidUsage{7, 1}));
}

TEST(ReportDescriptor, EveryCutShortDescriptorCountsUpToItsCut) {
  const Bytes whole = Join({Page(7), Usage(1), kApplication, {0xFE, 0x01, 0x99, 0x00}, kEnd});
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::size_t expected = size >= 8 ? 1 : 0;
    EXPECT_EQ(TopLevelUsages(std::span(whole).first(size)).size(), expected) << size;
  }
}

TEST(ReportDescriptor, AnyBytesAreReadToTheirEnd) {
  std::minstd_rand random(3);
  for (int i = 0; i < 2000; ++i) {
    Bytes bytes(random() % 512);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8);
    EXPECT_LE(TopLevelUsages(bytes).size(), bytes.size());
  }
}

}  // namespace
}  // namespace qlx::platform
