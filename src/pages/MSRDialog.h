// The "MSR" page.
#pragma once

#include "controls/help_book.h"
#include "pages/MSRSettings.h"
#include "pages/PageView.h"

namespace qlx {

/// Edits tracks, sentinels, wrappers and carriage returns of the magnetic stripe reader.
class MSRDialog : public PageView {
 public:
  MSRDialog(wxWindow* parent, FatalEnd end_program);

  std::wstring_view help_chapter() const override { return kMsrChapter; }

 private:
  void Fill() override;

  wxSizer* MakeParameters();
  wxSizer* MakeEnhanced();
  void AddWrapper(Place place, WrapperSide side);
  void BindRules();
  void ShowStates();
  void ShowWrapper(WrapperSide side);

  MSRSettings settings_;
};

}  // namespace qlx
