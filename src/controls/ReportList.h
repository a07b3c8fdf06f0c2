// A table of texts with one selected row, native on every platform and readable to a screen reader.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <wx/window.h>

namespace qlx {

/// Rows and columns count from 0. User-interface thread only; owned by whoever made it, its window by the
/// parent.
class ReportList {
 public:
  virtual ~ReportList() = default;

  virtual wxWindow& window() = 0;
  /// At least `width` pixels of the standard density wide, and as wide as its texts.
  virtual void AddColumn(const wxString& title, int width) = 0;
  virtual void AddRow(const wxString& first_cell) = 0;
  virtual void SetCell(int row, int column, const std::wstring& text) = 0;
  /// Empty when no row is selected.
  virtual std::optional<int> SelectedRow() const = 0;

  virtual void OnSelection(std::function<void()> handler) = 0;
  /// Called with the row that was double-clicked.
  virtual void OnDoubleClick(std::function<void(int row)> handler) = 0;
};

/// An empty list with the control id `id`: single selection over the full row, grid lines, selection always
/// shown.
std::unique_ptr<ReportList> MakeReportList(wxWindow* parent, int id);

}  // namespace qlx
