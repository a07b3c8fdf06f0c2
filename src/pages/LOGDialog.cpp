#include "pages/LOGDialog.h"

#include <utility>

#include <wx/statbox.h>

namespace qlx {
namespace {

constexpr int kDefaultButton = 1028;
constexpr int kApplyButton = 1026;

struct Module {
  int id;
  const char* label;
};

constexpr Module kModules[] = {
    {LOGSettings::kService, "Service"},
    {LOGSettings::kMsr, "MSR"},
    {LOGSettings::kLineDisplay, "Line Display"},
    {LOGSettings::kIButton, "iButton"},
    {LOGSettings::kCashDrawerUsb, "Cash Drawer (USB)"},
    {LOGSettings::kCashDrawerPci, "Cash Drawer (PCI)"},
    {LOGSettings::kPrinter, "Printer"},
};

constexpr const char* kLevels[] = {"Off", "Error", "Warning", "Info", "Verbose", "Trace"};

}  // namespace

LOGDialog::LOGDialog(wxWindow* parent, FatalEnd end_program)
    : PageView(parent, settings_, std::move(end_program)) {
  auto* page = new wxBoxSizer(wxVERTICAL);
  page->Add(MakeSettings(), wxSizerFlags().Expand().Border(wxALL));
  page->Add(MakeModules(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
  page->AddStretchSpacer();
  page->Add(MakeButtons(kDefaultButton, kApplyButton), wxSizerFlags().Right().Border(wxALL));
  SetSizer(page);
}

wxSizer* LOGDialog::MakeSettings() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, "Settings");
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 3));
  grid->AddGrowableCol(1);
  const Place in = {group->GetStaticBox(), grid};
  AddLabel(in, "Log File Name:");
  AddEdit(in, LOGSettings::kFileName, "Log File Name:", wxEXPAND);

  auto* size = new wxBoxSizer(wxHORIZONTAL);
  AddLabel(in, "Log File Size:");
  AddEdit({in.parent, size}, LOGSettings::kFileSize, "Log File Size:", 0);
  size->AddSpacer(GetCharWidth());
  AddLabel({in.parent, size}, "KB");
  grid->Add(size);

  AddLabel(in, "TCP Port Number:");
  AddEdit(in, LOGSettings::kTcpPort, "TCP Port Number:", 0);
  AddLabel(in, "Log Level:");
  AddChoice(in, LOGSettings::kLogLevel,
            "Log Level:", wxArrayString(std::size(kLevels), const_cast<const char**>(kLevels)));
  group->Add(grid, wxSizerFlags().Expand().Border(wxALL));
  return group;
}

wxSizer* LOGDialog::MakeModules() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, "Modules");
  auto* grid = new wxGridSizer(4, wxSize(2 * GetCharWidth(), GetCharHeight() / 3));
  for (const Module& module : kModules) AddCheckBox({group->GetStaticBox(), grid}, module.id, module.label);
  group->Add(grid, wxSizerFlags().Expand().Border(wxALL));
  return group;
}

}  // namespace qlx
