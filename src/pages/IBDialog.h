// The "iButton" page.
#pragma once

#include "controls/help_book.h"
#include "pages/IBSettings.h"
#include "pages/PageView.h"

namespace qlx {

/// Edits what the iButton reader reports, and turns text into the bytes that it sends around it.
class IBDialog : public PageView {
 public:
  /// A field for bytes and the button that copies the converter's result into it.
  struct ByteStringControls {
    int field;
    const char* label;
    int copy;
    const wchar_t* tip;
  };

  IBDialog(wxWindow* parent, FatalEnd end_program);

  std::wstring_view help_chapter() const override { return kIButtonChapter; }

 private:
  wxSizer* MakeParameters();
  wxSizer* MakeConverter();
  wxSizer* MakeChoices(wxWindow* group);
  void AddByteString(Place place, const ByteStringControls& row);

  IBSettings settings_;
  LimitedEdit* hex_ = nullptr;  ///< the converter's result
};

}  // namespace qlx
