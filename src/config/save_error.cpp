#include "config/save_error.h"

#include "platform/text.h"

namespace qlx {
namespace {

constexpr std::size_t kLongestText = 260;  // UTF-16 units

}  // namespace

std::wstring SaveErrorText(std::wstring_view sentence, const std::wstring& path) {
  const std::wstring text = Filled(sentence, path);
  return std::wstring(platform::Utf16Prefix(text, kLongestText));
}

}  // namespace qlx
