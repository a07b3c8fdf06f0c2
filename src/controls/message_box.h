// The tool's message boxes: one title, one icon, one button unless said otherwise.
#pragma once

#include <optional>
#include <string>

#include <wx/window.h>

#include "controls/translation.h"

namespace qlx {

/// The title of every box and of the main window.
inline constexpr const wchar_t* kProgramTitle = Translatable(L"Quillon Configuration Tool");

enum class BoxIcon { kNone, kInformation, kExclamation, kError };

/// Shows `text` and returns when the user has closed the box. User-interface thread.
void ShowBox(wxWindow* parent, const std::wstring& text, BoxIcon icon,
             const std::wstring& title = Translated(kProgramTitle));

/// Asks with the question icon. Empty when the user closed the box without an answer. User-interface thread.
std::optional<bool> AskYesNo(wxWindow* parent, const std::wstring& question);

}  // namespace qlx
