// The window half of a settings page: moves values between controls and model, nothing else.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <wx/sizer.h>

#include "config/FatalEnd.h"
#include "controls/LimitedEdit.h"
#include "controls/SettingsPage.h"
#include "pages/PageSettings.h"

namespace qlx {

/// Where a control goes: into the window of its group and into the sizer that lays the group out.
struct Place {
  wxWindow* parent;
  wxSizer* sizer;
};

/// Where the longer sentences of a page are broken, in average characters.
inline constexpr int kNoteCharacters = 75;

/// Base of the pages whose controls are all rows of a PageSettings table. The derived page makes its controls
/// in tab order with the Add functions, which know each setting's form and limit from the table.
class PageView : public SettingsPage {
 public:
  /// `settings` is the derived page's own model.
  PageView(wxWindow* parent, PageSettings& settings, FatalEnd end_program);

  void Initialise(ConfigDocument* document, bool editable) override;
  void SaveToData() override;
  bool HasUnsavedChanges() override;

 protected:
  void AddLabel(Place place, const wxString& label);
  void AddCheckBox(Place place, int id, const wxString& label);
  /// `name` is the accessible name; `flags` are the sizer's.
  void AddEdit(Place place, int id, const wxString& name, int flags, long style = 0);
  void AddHexEdit(Place place, int id, const wxString& name);
  void AddChoice(Place place, int id, const wxString& name, const wxArrayString& items);
  /// The buttons "Default" and "Apply", the last controls of every page.
  wxSizer* MakeButtons(int default_id, int apply_id);

  /// Shows the model's values and states.
  virtual void Fill();
  /// Hands what the controls hold to the model.
  void ReadBack();

 private:
  void SetDefaults();
  void Apply();
  void ReadText(int control);

  PageSettings& settings_;
  FatalEnd end_program_;
  ConfigDocument* document_ = nullptr;
};

}  // namespace qlx
