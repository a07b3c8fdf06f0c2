// A mark on the tab of every page that has unsaved changes.
#pragma once

#include <string>
#include <vector>

#include <wx/notebook.h>

namespace qlx {

/// The pages of `tabs` are SettingsPages. User-interface thread.
class UnsavedMarks {
 public:
  explicit UnsavedMarks(wxNotebook& tabs);

  /// Looks at every page and marks its tab or takes the mark away.
  void Update();

  /// The texts of the marked tabs, in their order.
  std::vector<std::wstring> Marked() const;

 private:
  wxNotebook& tabs_;
};

}  // namespace qlx
