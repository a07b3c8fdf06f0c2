#include "pages/LogoControls.h"

#include <utility>

#include "controls/translation.h"
#include "pages/CFileDialogEx.h"

namespace qlx {
namespace {

constexpr int kList = 1081;
constexpr int kAddButton = 1082;
constexpr int kDeleteButton = 1083;
constexpr int kPreview = 1086;
constexpr int kAvailability = 1;

}  // namespace

LogoControls::Choose ChooseLogoFile(wxWindow* page) {
  return [page]() -> std::optional<LogoControls::Choice> {
    CFileDialogEx dialog(wxGetTopLevelParent(page));
    if (dialog.ShowModal() != wxID_OK) return std::nullopt;
    return LogoControls::Choice{dialog.path(), dialog.encode_choice()};
  };
}

LogoControls::LogoControls(wxWindow* page, LogoStore& store, FatalEnd end_program, Choose choose)
    : store_(store),
      end_program_(std::move(end_program)),
      choose_(std::move(choose)),
      list_(MakeReportList(page, kList)),
      add_(new wxButton(page, kAddButton, _("Add Logo"))),
      delete_(new wxButton(page, kDeleteButton, _("Delete Logo"))),
      preview_(new CPictureBox(page, kPreview)) {
  list_->AddColumn(_("Slot"), 65);
  list_->AddColumn(_("Availability"), 95);
  for (int row = 0; row < LogoStore::kRows; ++row) list_->AddRow(std::to_string(row + 1));
  add_->Disable();
  delete_->Disable();
  for (wxWindow* control : {&list_->window(), static_cast<wxWindow*>(add_), static_cast<wxWindow*>(delete_),
                            static_cast<wxWindow*>(preview_)}) {
    control->Hide();
  }
  BindEvents();
}

void LogoControls::BindEvents() {
  const auto with_selected = [this](void (LogoControls::*operation)(int)) {
    if (const auto row = list_->SelectedRow()) (this->*operation)(*row);
  };
  list_->OnSelection([=] { with_selected(&LogoControls::Select); });
  list_->OnDoubleClick([this](int row) { Add(row); });
  list_->window().Bind(wxEVT_RIGHT_DCLICK, [=](wxMouseEvent&) { with_selected(&LogoControls::Delete); });
  add_->Bind(wxEVT_BUTTON, [=](wxCommandEvent&) { with_selected(&LogoControls::Add); });
  delete_->Bind(wxEVT_BUTTON, [=](wxCommandEvent&) { with_selected(&LogoControls::Delete); });
}

void LogoControls::Fill() {
  for (int row = 0; row < LogoStore::kRows; ++row) {
    list_->SetCell(row, kAvailability,
                   store_.Select(row).can_delete ? _("Used").ToStdWstring() : _("Not Used").ToStdWstring());
  }
}

void LogoControls::Select(int row) {
  const LogoSelection selection = store_.Select(row);
  add_->Enable(selection.can_add);
  delete_->Enable(selection.can_delete);
  preview_->ShowPicture(selection.preview);
}

void LogoControls::Add(int row) {
  if (!store_.Select(row).can_add) return;
  const auto choice = choose_();
  if (!choice) return;
  store_.Add(row, choice->path, choice->encode_choice, end_program_);
  Fill();
  Select(row);
}

void LogoControls::Delete(int row) {
  store_.Delete(row);
  Fill();
  Select(row);
}

}  // namespace qlx
