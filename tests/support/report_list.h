// A ReportList as a test looks at it and uses it.
#pragma once

#include <string>

#include <wx/window.h>

namespace qlx::test {

/// The text of a cell of the ReportList whose window is `list`.
std::wstring CellOf(wxWindow& list, int row, int column);

/// Selects a row as the user does: whoever asked for selections is told.
void SelectRow(wxWindow& list, int row);

}  // namespace qlx::test
