// The part of the printer page that shows and changes its logos.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <wx/button.h>

#include "controls/ReportList.h"
#include "pages/CPictureBox.h"
#include "pages/LogoStore.h"

namespace qlx {

/// The window of a LogoStore. Its controls are made hidden and stay so: the printers in use get their logos
/// by a utility of their own. Rows count from 0.
class LogoControls {
 public:
  /// A picture file and the index of its entry in kEncodeChoices.
  struct Choice {
    std::wstring path;
    int encode_choice;
  };
  /// Asks the user; empty when that was cancelled.
  using Choose = std::function<std::optional<Choice>()>;

  /// The controls belong to `page`, `store` to the caller.
  LogoControls(wxWindow* page, LogoStore& store, FatalEnd end_program, Choose choose);

  /// Shows which rows are used.
  void Fill();
  /// Offers what can be done with `row` and shows its picture.
  void Select(int row);
  /// Asks for a picture and puts it into the free row `row`.
  void Add(int row);
  /// Frees the used row `row`.
  void Delete(int row);

 private:
  void BindEvents();

  LogoStore& store_;
  FatalEnd end_program_;
  Choose choose_;
  std::unique_ptr<ReportList> list_;
  wxButton* add_;
  wxButton* delete_;
  CPictureBox* preview_;
};

/// Asks by the system's own dialog, over the window of `page`.
LogoControls::Choose ChooseLogoFile(wxWindow* page);

}  // namespace qlx
