// How large a text field has to be.
#pragma once

#include <cstddef>

#include <wx/window.h>

namespace qlx {

/// The size of a single-line field that shows `characters` in the text size that the user has chosen: the
/// toolkit's own is in fixed pixels, which cut enlarged text off.
wxSize FieldSize(const wxWindow& field, std::size_t characters);

}  // namespace qlx
