// The guide as the build has laid it beside the program: one page of HTML a chapter, and a list of them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qlx {

/// The chapters of the windows, by the names of their pages.
inline constexpr std::wstring_view kComPortsChapter = L"com-ports";
inline constexpr std::wstring_view kConfigureChapter = L"configure";
inline constexpr std::wstring_view kDemoChapter = L"demo";
inline constexpr std::wstring_view kLoggingChapter = L"logging";
inline constexpr std::wstring_view kMsrChapter = L"msr";
inline constexpr std::wstring_view kIButtonChapter = L"ibutton";
inline constexpr std::wstring_view kPrinterChapter = L"printer";

struct Chapter {
  std::wstring name;
  std::wstring title;
};

/// Never empty.
struct HelpBook {
  std::wstring folder;
  std::vector<Chapter> chapters;
};

/// The book in `folder`. Empty when its list of chapters cannot be read or is not as the build writes it.
std::optional<HelpBook> ReadHelpBook(const std::wstring& folder);

/// The index of the chapter called `name`; empty when there is none.
std::optional<std::size_t> FindChapter(const HelpBook& book, std::wstring_view name);

/// The HTML of the chapter called `name`. Empty when the book has none, or its file cannot be read.
std::optional<std::wstring> ReadChapter(const HelpBook& book, std::wstring_view name);

/// The files that the book in `folder` has, there or not.
std::wstring ContentsPath(const std::wstring& folder);
std::wstring ChapterPath(const std::wstring& folder, std::wstring_view name);

}  // namespace qlx
