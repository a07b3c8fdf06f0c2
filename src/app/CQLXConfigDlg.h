// The main window.
#pragma once

#include <memory>
#include <vector>

#include <wx/dialog.h>
#include <wx/modalhook.h>
#include <wx/notebook.h>

#include "config/ConfigDocument.h"
#include "controls/RestartProgress.h"
#include "controls/SettingsPage.h"
#include "services/ServiceRestart.h"

namespace qlx {

class PORTSDialog;

/// Counts the modal dialogs that are open, the main window included.
class ModalDepth : public wxModalDialogHook {
 public:
  ModalDepth() { Register(); }
  int count() const { return count_; }

 private:
  int Enter(wxDialog*) override {
    ++count_;
    return wxID_NONE;
  }
  void Exit(wxDialog*) override { --count_; }

  int count_ = 0;
};

/// Owns the configuration document, hosts the pages, saves them all at once, and on closing offers the
/// restart of the services.
class CQLXConfigDlg : public wxDialog {
 public:
  /// Loads or creates the configuration file, which may end the program.
  CQLXConfigDlg();
  CQLXConfigDlg(const CQLXConfigDlg&) = delete;
  CQLXConfigDlg& operator=(const CQLXConfigDlg&) = delete;
  ~CQLXConfigDlg() override;

 private:
  void MakePages();
  void LayOut();
  void BindEvents();
  void LoadDocument();
  void InitialisePages();
  void OnShown();
  void OnTabChanged(int tab);
  void OnApplyAll();
  void OnCancel();
  /// While a restart goes on, from here or from the COM Ports page.
  bool restarting() const;

  wxNotebook* tabs_;
  wxButton* apply_all_ = nullptr;
  /// The pages in the order in which they are initialised and saved.
  std::vector<SettingsPage*> pages_;
  PORTSDialog* ports_ = nullptr;
  std::unique_ptr<ConfigDocument> document_;
  bool editable_;
  bool shown_ = false;
  ModalDepth modal_depth_;
  RestartProgress restart_progress_;
  ServiceRestart restart_;
};

}  // namespace qlx
