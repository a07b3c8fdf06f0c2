// The COM Ports page.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <wx/button.h>
#include <wx/notebook.h>
#include <wx/stattext.h>

#include "config/FatalEnd.h"
#include "controls/ReportList.h"
#include "controls/RestartProgress.h"
#include "controls/SettingsPage.h"
#include "controls/UiThreadCalls.h"
#include "controls/help_book.h"
#include "ports/DeviceWatch.h"
#include "ports/PORTSSettings.h"
#include "ports/UsbDevices.h"
#include "services/ServiceRestart.h"

namespace qlx {

/// One row a device kind. Takes the rows' ports from those that are there when it is initialised; of a row
/// whose port is not there a line below the rows tells, at any time.
class PORTSDialog : public SettingsPage {
 public:
  PORTSDialog(wxNotebook* tabs, FatalEnd end_program);
  PORTSDialog(const PORTSDialog&) = delete;
  PORTSDialog& operator=(const PORTSDialog&) = delete;
  ~PORTSDialog() override;

  void Initialise(ConfigDocument* document, bool editable) override;
  void SaveToData() override;
  bool HasUnsavedChanges() override { return settings_.changed(); }
  std::wstring_view help_chapter() const override { return kComPortsChapter; }

  /// While a restart that began here goes on.
  bool restarting() const { return restart_.running(); }

 private:
  void LayOut();
  void BindEvents();
  void Fill();
  void WatchPorts();
  void TellAbsentPorts();
  wxString AbsentPortsInWords() const;
  void UpdateButtons();
  std::optional<DeviceKind> SelectedKind() const;

  void Configure();
  DeviceWatch::Look LookFor(DeviceKind kind);
  void Demo();
  void OpenDemo();
  void ClearAll();
  void Apply();
  void OnRestarted();

  FatalEnd end_program_;
  SupportedDevices supported_;
  UsbDevices devices_;
  PORTSSettings settings_;
  ConfigDocument* document_ = nullptr;
  bool editable_ = true;
  std::unique_ptr<ReportList> list_;
  wxStaticText* absent_ports_ = nullptr;
  wxButton* configure_ = nullptr;
  wxButton* demo_ = nullptr;
  wxButton* clear_all_ = nullptr;
  wxButton* apply_ = nullptr;
  RestartProgress restart_progress_;
  ServiceRestart restart_;
  std::vector<std::wstring> present_ports_;
  UiThreadCalls calls_;
  std::unique_ptr<DeviceWatch> watch_;  ///< ends before what it reports to
};

}  // namespace qlx
