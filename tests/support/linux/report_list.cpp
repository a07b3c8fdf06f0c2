#include "tests/support/report_list.h"

#include <wx/dataview.h>

namespace qlx::test {
namespace {

wxDataViewListCtrl& Native(wxWindow& list) {
  return dynamic_cast<wxDataViewListCtrl&>(list);
}

}  // namespace

std::wstring CellOf(wxWindow& list, int row, int column) {
  return Native(list).GetTextValue(static_cast<unsigned>(row), static_cast<unsigned>(column)).ToStdWstring();
}

/// The toolkit tells of no selection that a program makes.
void SelectRow(wxWindow& list, int row) {
  Native(list).SelectRow(static_cast<unsigned>(row));
  wxDataViewEvent event(wxEVT_DATAVIEW_SELECTION_CHANGED, &Native(list), Native(list).RowToItem(row));
  list.ProcessWindowEvent(event);
}

}  // namespace qlx::test
