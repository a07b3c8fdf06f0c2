// What a window of this kind costs by itself: a dialog of the same toolkit with five tabs and controls of the
// kinds that the tool's pages are made of. Checked boxes and drop-down lists count: the theme draws their
// marks. usage: startup_floor [alike] "minimal", which is meant without a word, has 70 controls; "alike" has
// as many of each kind, and as many groups, as the tool.
#include <wx/app.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dataview.h>
#include <wx/dialog.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace qlx::bench {

constexpr int kTabs = 5;

/// How many of each a tab has, and how many tabs have a list.
struct Mix {
  int labels;
  int texts;
  int choices;
  int check_boxes;
  int buttons;
  int groups;
  int lists;
};

constexpr Mix kMinimal = {5, 2, 1, 4, 2, 0, 0};
constexpr Mix kAlike = {6, 3, 2, 4, 4, 3, 2};

wxWindow* MakeChoice(wxWindow* page) {
  auto* choice = new wxChoice(page, wxID_ANY);
  choice->Append({"Off", "Error", "Warning", "Info", "Verbose", "Trace"});
  return choice;
}

wxWindow* MakeCheckBox(wxWindow* page, bool checked) {
  auto* box = new wxCheckBox(page, wxID_ANY, "Check box");
  box->SetValue(checked);
  return box;
}

wxWindow* MakeList(wxWindow* page) {
  auto* list = new wxDataViewListCtrl(page, wxID_ANY, wxDefaultPosition, wxSize(200, 100), wxDV_SINGLE);
  for (const char* title : {"Device", "Port", "Identification"}) list->AppendTextColumn(title);
  for (int row = 0; row < 7; ++row) {
    wxVector<wxVariant> cells(3, wxVariant(wxString("cell")));
    list->AppendItem(cells);
  }
  return list;
}

/// The groups are empty: what lies in one costs the same as beside it.
wxPanel* MakePage(wxWindow* tabs, const Mix& mix, bool has_list) {
  auto* page = new wxPanel(tabs);
  auto* grid = new wxFlexGridSizer(2, wxSize(4, 4));
  const auto add = [grid](wxWindow* control) { grid->Add(control, wxSizerFlags().CentreVertical()); };
  for (int i = 0; i < mix.labels; ++i) add(new wxStaticText(page, wxID_ANY, "Label:"));
  for (int i = 0; i < mix.texts; ++i) add(new wxTextCtrl(page, wxID_ANY, "text"));
  for (int i = 0; i < mix.choices; ++i) add(MakeChoice(page));
  for (int i = 0; i < mix.check_boxes; ++i) add(MakeCheckBox(page, i % 2 == 0));
  for (int i = 0; i < mix.buttons; ++i) add(new wxButton(page, wxID_ANY, "Button"));
  for (int i = 0; i < mix.groups; ++i) add(new wxStaticBox(page, wxID_ANY, "Group"));
  if (has_list) add(MakeList(page));
  page->SetSizer(grid);
  return page;
}

class FloorDialog : public wxDialog {
 public:
  explicit FloorDialog(const Mix& mix) : wxDialog(nullptr, wxID_ANY, "Quillon Configuration Tool") {
    auto* tabs = new wxNotebook(this, wxID_ANY);
    for (int tab = 0; tab < kTabs; ++tab) {
      tabs->AddPage(MakePage(tabs, mix, tab < mix.lists), "Tab");
    }
    auto* frame = new wxBoxSizer(wxVERTICAL);
    frame->Add(tabs, wxSizerFlags(1).Expand());
    SetSizerAndFit(frame);
  }
};

class FloorApp : public wxApp {
 public:
  /// The toolkit's own would refuse the argument.
  bool OnInit() override { return true; }

  int OnRun() override {
    FloorDialog(argc > 1 && argv[1] == "alike" ? kAlike : kMinimal).ShowModal();
    return 0;
  }
};

}  // namespace qlx::bench

wxIMPLEMENT_APP(qlx::bench::FloorApp);
