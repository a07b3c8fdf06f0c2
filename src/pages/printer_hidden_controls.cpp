#include "pages/printer_hidden_controls.h"

#include <array>

#include <wx/checkbox.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include "controls/DropDownList.h"

namespace qlx {
namespace {

struct HiddenList {
  int id;
  const char* label;
  std::array<const char*, 4> items;  ///< null behind the last
};

constexpr HiddenList kLists[] = {
    {1079, "Printer Receipt Width:", {"80 mm", "58 mm"}},
    {1076, "Dots Between Print Line:", {"Application Setting", "4 Dots", "2 Dots"}},
    {1077, "Reduction of Blank Space:", {"Application Setting", "50% Reduction", "75% Reduction"}},
    {1078,
     "Barcode Height Reduction:",
     {"Application Setting", "25% Reduction", "50% Reduction", "75% Reduction"}},
};

struct HiddenCheckBox {
  int id;
  const char* label;
};

constexpr HiddenCheckBox kCheckBoxes[] = {{1071, "Low Paper Detection"}, {1080, "Low Paper LED"}};
constexpr const char* kGroups[] = {"Paper Saving Options", "Logo"};

void Hide(wxWindow* control) {
  control->Hide();
}

}  // namespace

void MakeHiddenPrinterControls(wxWindow* page) {
  for (const HiddenList& row : kLists) {
    Hide(new wxStaticText(page, wxID_ANY, row.label));
    auto* list = new DropDownList(page, row.id);
    for (const char* item : row.items) {
      if (item != nullptr) list->Append(item);
    }
    Hide(list);
  }
  for (const HiddenCheckBox& row : kCheckBoxes) Hide(new wxCheckBox(page, row.id, row.label));
  for (const char* label : kGroups) Hide(new wxStaticBox(page, wxID_ANY, label));
}

}  // namespace qlx
