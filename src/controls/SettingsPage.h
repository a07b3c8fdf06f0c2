// What the main window asks of each of its pages.
#pragma once

#include <wx/panel.h>

#include "controls/help.h"

namespace qlx {

class ConfigDocument;

/// One tab page. The document is lent for the life of the page; user-interface thread only.
class SettingsPage : public wxPanel, public HasHelp {
 public:
  using wxPanel::wxPanel;

  /// Shows the page's section of `document`. Without a document the program ends with the page's message.
  /// With `editable` false every control stays grey, whatever else happens to it.
  virtual void Initialise(ConfigDocument* document, bool editable) = 0;

  /// Writes the section and saves the file.
  virtual void SaveToData() = 0;

  /// Whether the page shows something else than when it was last filled from the file or written to it.
  virtual bool HasUnsavedChanges() = 0;
};

}  // namespace qlx
