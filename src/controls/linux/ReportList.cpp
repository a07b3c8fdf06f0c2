#include "controls/ReportList.h"

#include <utility>

#include <gtk/gtk.h>
#include <wx/dataview.h>

namespace qlx {
namespace {

/// GTK activates a row by double-click and by keys alike.
bool ComesFromTheKeyboard() {
  const std::unique_ptr<GdkEvent, decltype(&gdk_event_free)> event(gtk_get_current_event(), &gdk_event_free);
  return event && (event->type == GDK_KEY_PRESS || event->type == GDK_KEY_RELEASE);
}

/// The toolkit's list control draws itself on GTK and tells a screen reader nothing; this one is GTK's own.
class DataViewList final : public ReportList {
 public:
  // The first size is too small for GTK's own scroll bars unless one is given.
  DataViewList(wxWindow* parent, int id)
      : list_(new wxDataViewListCtrl(parent, id, wxDefaultPosition, wxSize(200, 100),
                                     wxDV_SINGLE | wxDV_HORIZ_RULES | wxDV_VERT_RULES)) {}

  wxWindow& window() override { return *list_; }

  void AddColumn(const wxString& title, int width) override {
    list_->AppendTextColumn(title, wxDATAVIEW_CELL_INERT, wxCOL_WIDTH_AUTOSIZE)
        ->SetMinWidth(list_->FromDIP(width));
  }

  void AddRow(const wxString& first_cell) override {
    wxVector<wxVariant> cells(list_->GetColumnCount(), wxVariant(wxString()));
    cells[0] = first_cell;
    list_->AppendItem(cells);
  }

  void SetCell(int row, int column, const std::wstring& text) override {
    wxDataViewListStore& store = *list_->GetStore();
    store.SetValueByRow(wxString(text), static_cast<unsigned>(row), static_cast<unsigned>(column));
    // A changed value alone would be painted, but a screen reader would go on with the old one.
    store.RowChanged(static_cast<unsigned>(row));
  }

  std::optional<int> SelectedRow() const override {
    const int row = list_->GetSelectedRow();
    return row == wxNOT_FOUND ? std::nullopt : std::optional(row);
  }

  void OnSelection(std::function<void()> handler) override {
    list_->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED,
                [handler = std::move(handler)](wxDataViewEvent&) { handler(); });
  }

  void OnDoubleClick(std::function<void(int row)> handler) override {
    list_->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this, handler = std::move(handler)](wxDataViewEvent& event) {
      if (!ComesFromTheKeyboard()) handler(list_->ItemToRow(event.GetItem()));
    });
  }

 private:
  wxDataViewListCtrl* list_;
};

}  // namespace

std::unique_ptr<ReportList> MakeReportList(wxWindow* parent, int id) {
  return std::make_unique<DataViewList>(parent, id);
}

}  // namespace qlx
