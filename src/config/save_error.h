// What the user reads when the configuration file cannot be written.
#pragma once

#include <string>
#include <string_view>

#include "config/Message.h"

namespace qlx {

inline constexpr const wchar_t* kSaveErrorTitle = Translatable(L"Save File Error!");
inline constexpr const wchar_t* kSaveErrorSentence =
    Translatable(L"Unable to save file \"%s\".\nPlease check location of file");

/// `sentence`, which is kSaveErrorSentence in whatever language, about the file `path`: at most 260 UTF-16
/// code units of it.
std::wstring SaveErrorText(std::wstring_view sentence, const std::wstring& path);

}  // namespace qlx
