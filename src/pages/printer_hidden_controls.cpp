#include "pages/printer_hidden_controls.h"

#include <array>

#include <wx/checkbox.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include "controls/DropDownList.h"
#include "controls/translation.h"

namespace qlx {
namespace {

struct HiddenList {
  int id;
  const char* label;
  std::array<const char*, 4> items;  ///< null behind the last
};

constexpr HiddenList kLists[] = {
    {1079, Translatable("Printer Receipt Width:"), {Translatable("80 mm"), Translatable("58 mm")}},
    {1076,
     Translatable("Dots Between Print Line:"),
     {Translatable("Application Setting"), Translatable("4 Dots"), Translatable("2 Dots")}},
    {1077,
     Translatable("Reduction of Blank Space:"),
     {Translatable("Application Setting"), Translatable("50% Reduction"), Translatable("75% Reduction")}},
    {1078,
     Translatable("Barcode Height Reduction:"),
     {Translatable("Application Setting"), Translatable("25% Reduction"), Translatable("50% Reduction"),
      Translatable("75% Reduction")}},
};

struct HiddenCheckBox {
  int id;
  const char* label;
};

constexpr HiddenCheckBox kCheckBoxes[] = {{1071, Translatable("Low Paper Detection")},
                                          {1080, Translatable("Low Paper LED")}};
constexpr const char* kGroups[] = {Translatable("Paper Saving Options"), Translatable("Logo")};

void Hide(wxWindow* control) {
  control->Hide();
}

}  // namespace

void MakeHiddenPrinterControls(wxWindow* page) {
  for (const HiddenList& row : kLists) {
    Hide(new wxStaticText(page, wxID_ANY, _(row.label)));
    auto* list = new DropDownList(page, row.id);
    for (const char* item : row.items) {
      if (item != nullptr) list->Append(_(item));
    }
    Hide(list);
  }
  for (const HiddenCheckBox& row : kCheckBoxes) Hide(new wxCheckBox(page, row.id, _(row.label)));
  for (const char* label : kGroups) Hide(new wxStaticBox(page, wxID_ANY, _(label)));
}

}  // namespace qlx
