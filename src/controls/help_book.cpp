#include "controls/help_book.h"

#include <algorithm>
#include <filesystem>

#include "platform/file_store.h"
#include "platform/text.h"

namespace qlx {
namespace {

constexpr wchar_t kSeparator = std::filesystem::path::preferred_separator;
constexpr std::wstring_view kContents = L"contents";
constexpr std::wstring_view kPageEnding = L".html";
constexpr std::size_t kLargestFile = 1 << 20;

std::optional<std::wstring> ReadText(const std::wstring& path) {
  const platform::ReadResult file = platform::SystemFileStore().Read(path, kLargestFile);
  if (file.status != platform::ReadStatus::kRead) return std::nullopt;
  return platform::FromUtf8(file.bytes);
}

/// Of a line "name<TAB>title".
std::optional<Chapter> ChapterOf(std::wstring_view line) {
  const std::size_t tab = line.find(L'\t');
  if (tab == 0 || tab == std::wstring_view::npos || tab + 1 == line.size()) return std::nullopt;
  return Chapter{std::wstring(line.substr(0, tab)), std::wstring(line.substr(tab + 1))};
}

}  // namespace

std::optional<HelpBook> ReadHelpBook(const std::wstring& folder) {
  const auto text = ReadText(ContentsPath(folder));
  if (!text || text->empty() || text->back() != L'\n') return std::nullopt;
  HelpBook book{folder, {}};
  for (std::wstring_view rest = *text; !rest.empty();) {
    const std::size_t end = rest.find(L'\n');
    auto chapter = ChapterOf(rest.substr(0, end));
    if (!chapter) return std::nullopt;
    book.chapters.push_back(std::move(*chapter));
    rest.remove_prefix(end + 1);
  }
  return book;
}

std::optional<std::size_t> FindChapter(const HelpBook& book, std::wstring_view name) {
  const auto found = std::ranges::find(book.chapters, name, &Chapter::name);
  if (found == book.chapters.end()) return std::nullopt;
  return static_cast<std::size_t>(found - book.chapters.begin());
}

std::optional<std::wstring> ReadChapter(const HelpBook& book, std::wstring_view name) {
  return FindChapter(book, name) ? ReadText(ChapterPath(book.folder, name)) : std::nullopt;
}

std::wstring ContentsPath(const std::wstring& folder) {
  return folder + kSeparator + std::wstring(kContents);
}

std::wstring ChapterPath(const std::wstring& folder, std::wstring_view name) {
  return folder + kSeparator + std::wstring(name) + std::wstring(kPageEnding);
}

}  // namespace qlx
