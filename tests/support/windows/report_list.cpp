#include "tests/support/report_list.h"

#include <wx/listctrl.h>

namespace qlx::test {
namespace {

wxListCtrl& Native(wxWindow& list) {
  return dynamic_cast<wxListCtrl&>(list);
}

}  // namespace

std::wstring CellOf(wxWindow& list, int row, int column) {
  return Native(list).GetItemText(row, column).ToStdWstring();
}

void SelectRow(wxWindow& list, int row) {
  Native(list).SetItemState(row, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);
}

}  // namespace qlx::test
