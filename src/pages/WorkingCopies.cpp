#include "pages/WorkingCopies.h"

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <string_view>

#include "pages/logo_failures.h"
#include "pages/logo_files.h"
#include "pages/logo_image.h"
#include "platform/directories.h"
#include "platform/text.h"

namespace qlx {
namespace {

constexpr wchar_t kFolder[] = L"logos";
constexpr wchar_t kSeparator = std::filesystem::path::preferred_separator;
/// So that a number and an extension find room behind it in every file system.
constexpr std::size_t kLongestStem = 60;

/// The name of the file `path` without folder and extension.
std::wstring_view Stem(std::wstring_view path) {
  const std::wstring_view name = path.substr(path.find_last_of(L"/\\") + 1);
  return platform::Utf16Prefix(name.substr(0, name.find_last_of(L'.')), kLongestStem);
}

bool SameText(std::wstring_view one, std::wstring_view other) {
  const auto lower = [](wchar_t c) { return std::towlower(static_cast<std::wint_t>(c)); };
  return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace

std::wstring WorkingCopies::Make(const std::wstring& source, Station station, const FatalEnd& end) {
  const auto picture = system_.decode(source);
  if (!picture) {
    EndFor(kNotReadToCut, source, system_, end);
    return {};
  }
  std::wstring path = FreePath(source);
  const bool ready = platform::MakePrivateDirectory(system_.temporary_directory + kFolder);
  if (!ready || !SaveBitmap(Cropped(picture->image, RowOf(station).limit), path, system_)) {
    EndFor(kNotCut, path, system_, end);
    return {};
  }
  paths_.push_back(path);
  return path;
}

void WorkingCopies::Delete(const std::wstring& path) {
  const auto found = Find(path);
  if (found == paths_.end()) return;
  system_.remove_file(*found);
  paths_.erase(found);
}

void WorkingCopies::DeleteAll(const FatalEnd& end) {
  for (; !paths_.empty(); paths_.pop_back()) {
    if (!system_.remove_file(paths_.back())) return EndFor(kNotDeleted, paths_.back(), system_, end);
  }
}

std::vector<std::wstring>::iterator WorkingCopies::Find(const std::wstring& path) {
  return std::ranges::find_if(paths_, [&](const std::wstring& copy) { return SameText(copy, path); });
}

/// Two pictures of the same name from different folders have a copy each.
std::wstring WorkingCopies::FreePath(const std::wstring& source) {
  const std::wstring start = system_.temporary_directory + kFolder + kSeparator + std::wstring(Stem(source));
  std::wstring path = start + L".bmp";
  for (int number = 2; Find(path) != paths_.end(); ++number) {
    path = start + L"-" + std::to_wstring(number) + L".bmp";
  }
  return path;
}

}  // namespace qlx
