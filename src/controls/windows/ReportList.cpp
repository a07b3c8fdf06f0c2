#include "controls/ReportList.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include <wx/listctrl.h>

namespace qlx {
namespace {

constexpr int kCellPadding = 14;  ///< pixels of the standard density that the control leaves around a text

class NativeList final : public ReportList {
 public:
  NativeList(wxWindow* parent, int id)
      : list_(new wxListCtrl(parent, id, wxDefaultPosition, wxDefaultSize,
                             wxLC_REPORT | wxLC_SINGLE_SEL | wxLC_HRULES | wxLC_VRULES)) {
    list_->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
      event.Skip();
      laid_out_ = true;
      FillWidth();
    });
  }

  wxWindow& window() override { return *list_; }

  void AddColumn(const wxString& title, int width) override {
    widths_.push_back(list_->FromDIP(width));
    list_->AppendColumn(title, wxLIST_FORMAT_LEFT, widths_.back());
    Widen(widths_.size() - 1, title);
  }

  void AddRow(const wxString& first_cell) override {
    list_->InsertItem(list_->GetItemCount(), first_cell);
    Widen(0, first_cell);
  }

  void SetCell(int row, int column, const std::wstring& text) override {
    list_->SetItem(row, column, text);
    Widen(static_cast<std::size_t>(column), text);
  }

  std::optional<int> SelectedRow() const override {
    const long row = list_->GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED);
    return row == wxNOT_FOUND ? std::nullopt : std::optional(static_cast<int>(row));
  }

  void OnSelection(std::function<void()> handler) override {
    list_->Bind(wxEVT_LIST_ITEM_SELECTED, [handler](wxListEvent&) { handler(); });
    list_->Bind(wxEVT_LIST_ITEM_DESELECTED, [handler = std::move(handler)](wxListEvent&) { handler(); });
  }

  /// The control's own activation comes from the Enter key too.
  void OnDoubleClick(std::function<void(int row)> handler) override {
    list_->Bind(wxEVT_LEFT_DCLICK, [this, handler = std::move(handler)](wxMouseEvent& event) {
      event.Skip();
      int place = 0;
      const long row = list_->HitTest(event.GetPosition(), place);
      if (row == wxNOT_FOUND) return;
      // The control takes the click first: a handler may open a window that keeps this event waiting.
      list_->CallAfter([handler, row] { handler(static_cast<int>(row)); });
    });
  }

 private:
  void Widen(std::size_t column, const wxString& text) {
    const int needed = list_->GetTextExtent(text).x + list_->FromDIP(kCellPadding);
    widths_[column] = std::max(widths_[column], needed);
    list_->SetColumnWidth(static_cast<int>(column), widths_[column]);
    if (laid_out_) FillWidth();
  }

  /// The last column takes what the others leave: the control would show an empty one more.
  void FillWidth() {
    if (widths_.empty()) return;
    const int others = std::accumulate(widths_.begin(), widths_.end() - 1, 0);
    const int rest = list_->GetClientSize().GetWidth() - others;
    list_->SetColumnWidth(static_cast<int>(widths_.size()) - 1, std::max(widths_.back(), rest));
  }

  wxListCtrl* list_;
  std::vector<int> widths_;  ///< that each column needs, in pixels
  bool laid_out_ = false;    ///< until then the widths decide how large the list wants to be
};

}  // namespace

std::unique_ptr<ReportList> MakeReportList(wxWindow* parent, int id) {
  return std::make_unique<NativeList>(parent, id);
}

}  // namespace qlx
