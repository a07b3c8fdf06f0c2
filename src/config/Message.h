// What the core says to the user: English sentences that a view shows in the user's language.
#pragma once

#include <string>
#include <string_view>

namespace qlx {

/// Marks `text` for the catalogues of translations, which `scripts/translations` collects, and leaves it as
/// it is. A text of more than one literal has its L before the first only: the collector stops at another.
constexpr const wchar_t* Translatable(const wchar_t* text) {
  return text;
}
constexpr const char* Translatable(const char* text) {
  return text;
}

/// A sentence and what it is about.
struct Message {
  std::wstring_view sentence;  ///< a marked text; empty for a value that is shown as it is in every language
  std::wstring value{};        ///< stands where the sentence has "%s", if it has
};

/// `sentence`, in whatever language, with `value` in the place of its first "%s".
std::wstring Filled(std::wstring_view sentence, const std::wstring& value);

std::wstring InEnglish(const Message& message);

}  // namespace qlx
