// The user's language: every text that a window shows goes through here or through the toolkit's "_".
#pragma once

#include <span>
#include <string>
#include <string_view>

#include <wx/arrstr.h>
#include <wx/translation.h>

#include "config/Message.h"

namespace qlx {

/// Chooses the user's language among the catalogues in `folder` and the English of the source, and loads it.
/// The process's locale stays what it is: numbers, order and character sets are the same in every language.
void LoadTranslations(const std::wstring& folder);

/// `text` in the user's language; `text` itself where the catalogue does not have it. User-interface thread.
std::wstring Translated(std::wstring_view text);
std::wstring Translated(const Message& message);
wxArrayString Translated(std::span<const char* const> texts);

}  // namespace qlx
