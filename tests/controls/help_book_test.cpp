#include "controls/help_book.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"

namespace qlx {
namespace {

constexpr std::wstring_view kChaptersOfWindows[] = {kComPortsChapter, kConfigureChapter, kDemoChapter,
                                                    kLoggingChapter,  kMsrChapter,       kIButtonChapter,
                                                    kPrinterChapter};

/// The book of the build.
std::optional<HelpBook> TheBook() {
  return ReadHelpBook(std::filesystem::path(QLX_HELP_FOLDER).wstring());
}

TEST(TheHelpBook, HasTheChapterOfEachWindow) {
  const auto book = TheBook();
  ASSERT_TRUE(book);
  for (const std::wstring_view name : kChaptersOfWindows) {
    EXPECT_TRUE(FindChapter(*book, name)) << std::string(name.begin(), name.end());
  }
}

TEST(TheHelpBook, HasThePageOfEachChapterWithItsTitle) {
  const auto book = TheBook();
  ASSERT_TRUE(book);
  for (const Chapter& chapter : book->chapters) {
    const auto html = ReadChapter(*book, chapter.name);
    ASSERT_TRUE(html);
    EXPECT_NE(html->find(L"<h1>" + chapter.title + L"</h1>"), std::wstring::npos);
  }
}

class HelpBookTest : public testing::Test {
 protected:
  std::optional<HelpBook> Read(const std::string& contents) {
    std::ofstream(folder_.path() / "contents", std::ios::binary) << contents;
    return ReadHelpBook(folder_.path().wstring());
  }

  test::TemporaryDirectory folder_;
};

TEST_F(HelpBookTest, ListsTheChaptersInTheirOrder) {
  const auto book = Read("index\tThe tool\nmsr\tCards\n");
  ASSERT_TRUE(book);
  ASSERT_EQ(book->chapters.size(), 2U);
  EXPECT_EQ(book->chapters[1].title, L"Cards");
  EXPECT_EQ(FindChapter(*book, L"msr"), 1U);
  EXPECT_EQ(FindChapter(*book, L"ms"), std::nullopt);
}

TEST_F(HelpBookTest, AFolderWithoutAListIsNoBook) {
  EXPECT_FALSE(ReadHelpBook(folder_.path().wstring()));
}

TEST_F(HelpBookTest, ADamagedListIsNoBook) {
  for (const char* damaged : {"", "\n", "index", "index\tThe tool", "index\n", "\tThe tool\n", "index\t\n",
                              "index\tThe tool\nmsr"}) {
    EXPECT_FALSE(Read(damaged)) << damaged;
  }
}

TEST_F(HelpBookTest, AMissingPageIsNoText) {
  const auto book = Read("msr\tCards\n");
  ASSERT_TRUE(book);
  EXPECT_FALSE(ReadChapter(*book, L"msr"));
}

}  // namespace
}  // namespace qlx
