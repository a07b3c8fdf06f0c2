#include "pages/LOGDialog.h"

#include <utility>

#include <wx/statbox.h>

#include "controls/tool_tips.h"
#include "controls/translation.h"

namespace qlx {
namespace {

constexpr int kDefaultButton = 1028;
constexpr int kApplyButton = 1026;

struct Module {
  int id;
  const char* label;
};

constexpr Module kModules[] = {
    {LOGSettings::Control(L"Module_Service"), Translatable("Servi&ce")},
    {LOGSettings::Control(L"Module_MSR"), Translatable("&MSR")},
    {LOGSettings::Control(L"Module_LD"), Translatable("L&ine Display")},
    {LOGSettings::Control(L"Module_IB"), Translatable("i&Button")},
    {LOGSettings::Control(L"Module_CD"), Translatable("Cash Drawer (&USB)")},
    {LOGSettings::Control(L"Module_CD_PCI"), Translatable("Cash D&rawer (PCI)")},
    {LOGSettings::Control(L"Module_PRINTER_USB"), Translatable("Print&er")},
};

constexpr int kModuleColumns = 4;

constexpr const char* kLevels[] = {Translatable("Off"),  Translatable("Error"),   Translatable("Warning"),
                                   Translatable("Info"), Translatable("Verbose"), Translatable("Trace")};

constexpr Term kTerms[] = {
    {LOGSettings::kTcpPort, Translatable("Where the logging service listens on this machine.")},
    {LOGSettings::kLogLevel, Translatable("How much is logged: each level includes the ones before it.")},
};

}  // namespace

LOGDialog::LOGDialog(wxWindow* parent, FatalEnd end_program)
    : PageView(parent, settings_, std::move(end_program)) {
  auto* page = new wxBoxSizer(wxVERTICAL);
  page->Add(MakeSettings(), wxSizerFlags().Expand().Border(wxALL));
  page->Add(MakeModules(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
  page->AddStretchSpacer();
  page->Add(MakeButtons(kDefaultButton, kApplyButton), wxSizerFlags().Right().Border(wxALL));
  SetSizer(page);
  ExplainTerms(*this, kTerms);
}

wxSizer* LOGDialog::MakeSettings() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, _("Settings"));
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 3));
  grid->AddGrowableCol(1);
  const Place in = {group->GetStaticBox(), grid};
  AddLabel(in, _("Log File &Name:"));
  AddEdit(in, LOGSettings::kFileName, _("Log File &Name:"), wxEXPAND);

  auto* size = new wxBoxSizer(wxHORIZONTAL);
  AddLabel(in, _("Log File &Size:"));
  AddEdit({in.parent, size}, LOGSettings::kFileSize, _("Log File &Size:"), 0);
  size->AddSpacer(GetCharWidth());
  AddLabel({in.parent, size}, _("KB"));
  grid->Add(size);

  AddLabel(in, _("&TCP Port Number:"));
  AddEdit(in, LOGSettings::kTcpPort, _("&TCP Port Number:"), 0);
  AddLabel(in, _("Log Le&vel:"));
  AddChoice(in, LOGSettings::kLogLevel, _("Log Le&vel:"), Translated(kLevels));
  group->Add(grid, wxSizerFlags().Expand().Border(wxALL));
  return group;
}

wxSizer* LOGDialog::MakeModules() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, _("Modules"));
  auto* grid = new wxFlexGridSizer(kModuleColumns, wxSize(2 * GetCharWidth(), GetCharHeight() / 3));
  for (int column = 0; column < kModuleColumns; ++column)
    grid->AddGrowableCol(static_cast<std::size_t>(column));
  for (const Module& module : kModules)
    AddCheckBox({group->GetStaticBox(), grid}, module.id, _(module.label));
  group->Add(grid, wxSizerFlags().Expand().Border(wxALL));
  return group;
}

}  // namespace qlx
