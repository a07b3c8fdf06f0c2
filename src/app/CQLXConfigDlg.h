// The main window.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <wx/dialog.h>
#include <wx/modalhook.h>
#include <wx/notebook.h>
#include <wx/stattext.h>

#include "app/UnsavedMarks.h"
#include "config/ConfigDocument.h"
#include "controls/BusyWindow.h"
#include "controls/RestartProgress.h"
#include "controls/SettingsPage.h"
#include "controls/UiThreadCalls.h"
#include "services/ServiceRestart.h"

namespace qlx {

class PORTSDialog;
class PRINTERDialog;
class StatusLine;

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
class CQLXConfigDlg : public wxDialog, public HasHelp {
 public:
  /// Loads or creates the configuration file, which may end the program.
  CQLXConfigDlg();
  CQLXConfigDlg(const CQLXConfigDlg&) = delete;
  CQLXConfigDlg& operator=(const CQLXConfigDlg&) = delete;
  ~CQLXConfigDlg() override;

  /// That of the page in front.
  std::wstring_view help_chapter() const override;

 private:
  void MakePages();
  void LayOut();
  wxWindow* ReadOnlyBanner();
  void BindEvents();
  void LoadDocument();
  void InitialisePages();
  void OnShown();
  void OnIdle();
  void OnTabChanged(int tab);
  void OnApplyAll();
  void OnCancel();
  /// While a restart goes on, from here or from the COM Ports page, the printer page saves or the printer is
  /// asked.
  bool busy() const;

  // The printer is asked once in a run for each of its answers, and given time to answer; a port that cannot
  // be opened is logged.
  void QueryPrinterAtStart();
  void QueryPrinterForTab();
  void WhileAsking(const std::function<void(BusyWindow&)>& ask);

  wxNotebook* tabs_;
  UnsavedMarks marks_;
  wxButton* apply_all_ = nullptr;
  /// The pages in the order in which they are initialised and saved.
  std::vector<SettingsPage*> pages_;
  PORTSDialog* ports_ = nullptr;
  PRINTERDialog* printer_ = nullptr;
  std::unique_ptr<ConfigDocument> document_;
  bool editable_;
  bool shown_ = false;
  bool information_requested_ = false;
  bool code_pages_requested_ = false;
  bool was_busy_ = false;
  StatusLine* status_ = nullptr;
  wxStaticText* asking_ = nullptr;  ///< shown while the printer is asked
  ModalDepth modal_depth_;
  UiThreadCalls calls_;
  RestartProgress restart_progress_;
  ServiceRestart restart_;
};

}  // namespace qlx
