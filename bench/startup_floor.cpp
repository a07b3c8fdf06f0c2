// The least that a window of this kind costs: a dialog of the same toolkit with five tabs and 70 controls, of
// the kinds that the tool's pages are made of. Checked boxes and drop-down lists count: the theme draws their
// marks.
#include <wx/app.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace qlx::bench {

constexpr int kTabs = 5;
constexpr int kControlsPerTab = 14;

wxWindow* MakeControl(wxWindow* page, int index) {
  if (index < 5) return new wxStaticText(page, wxID_ANY, "Label:");
  if (index < 7) return new wxTextCtrl(page, wxID_ANY, "text");
  if (index == 7) {
    auto* choice = new wxChoice(page, wxID_ANY);
    choice->Append({"Off", "Error", "Warning", "Info", "Verbose", "Trace"});
    return choice;
  }
  if (index < 12) {
    auto* box = new wxCheckBox(page, wxID_ANY, "Check box");
    box->SetValue(index % 2 == 0);
    return box;
  }
  return new wxButton(page, wxID_ANY, "Button");
}

class FloorDialog : public wxDialog {
 public:
  FloorDialog() : wxDialog(nullptr, wxID_ANY, "Quillon Configuration Tool") {
    auto* tabs = new wxNotebook(this, wxID_ANY);
    for (int tab = 0; tab < kTabs; ++tab) {
      auto* page = new wxPanel(tabs);
      auto* grid = new wxFlexGridSizer(2, wxSize(4, 4));
      for (int i = 0; i < kControlsPerTab; ++i)
        grid->Add(MakeControl(page, i), wxSizerFlags().CentreVertical());
      page->SetSizer(grid);
      tabs->AddPage(page, "Tab");
    }
    auto* frame = new wxBoxSizer(wxVERTICAL);
    frame->Add(tabs, wxSizerFlags(1).Expand());
    SetSizerAndFit(frame);
  }
};

class FloorApp : public wxApp {
 public:
  int OnRun() override {
    FloorDialog().ShowModal();
    return 0;
  }
};

}  // namespace qlx::bench

wxIMPLEMENT_APP(qlx::bench::FloorApp);
