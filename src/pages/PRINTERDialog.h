// The "Printer" page.
#pragma once

#include <optional>
#include <thread>

#include "config/FatalEnd.h"
#include "controls/BusyWindow.h"
#include "controls/SettingsPage.h"
#include "controls/UiThreadCalls.h"
#include "controls/help_book.h"
#include "pages/LogoControls.h"
#include "pages/LogoStore.h"
#include "pages/PRINTERSettings.h"
#include "pages/PrinterQuery.h"

class wxCheckBox;
class wxChoice;
class wxHyperlinkCtrl;
class wxStaticText;

namespace qlx {

/// Edits the receipt printer's code page, programming interface and unsolicited status. Some controls, those
/// of the logos among them, are there and hidden: the printers in use are set up with a utility of their own.
class PRINTERDialog : public SettingsPage {
 public:
  PRINTERDialog(wxWindow* parent, FatalEnd end_program);
  PRINTERDialog(const PRINTERDialog&) = delete;
  PRINTERDialog& operator=(const PRINTERDialog&) = delete;
  ~PRINTERDialog() override;

  void Initialise(ConfigDocument* document, bool editable) override;
  void SaveToData() override;
  bool HasUnsavedChanges() override;
  std::wstring_view help_chapter() const override { return kPrinterChapter; }

  /// From the Apply button to the end of its worker.
  bool saving() const { return saving_; }

  // What the main window does with the printer's port.
  bool OpenPort() { return query_.Open(); }
  void ClosePort();
  void RequestDeviceInformation() { query_.RequestInformation(); }
  void RequestCodePages();

 private:
  void MakeControls();
  void LayOut();
  wxSizer* LayOutSetup();
  void BindEvents();
  void Fill();
  void ReadBack();
  void ShowAnswers();
  void OpenWebPage();
  void Apply();
  void Save(const PrinterValues& values);
  void OnSaving();
  void OnSaved(bool written);

  FatalEnd end_program_;
  ConfigDocument* document_ = nullptr;
  PRINTERSettings settings_;
  LogoStore logos_;
  bool saving_ = false;

  wxChoice* code_page_ = nullptr;
  wxChoice* emulation_ = nullptr;
  wxHyperlinkCtrl* link_ = nullptr;
  wxCheckBox* unsolicited_status_ = nullptr;
  wxStaticText* state_ = nullptr;
  LogoControls logo_controls_;
  std::optional<BusyWindow> busy_;  ///< while the worker saves

  PrinterLog log_;
  UiThreadCalls calls_;
  PrinterQuery query_;
  std::thread saver_;
};

}  // namespace qlx
