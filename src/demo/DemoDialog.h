// The demo of one device.
#pragma once

#include <string>
#include <vector>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>
#include <wx/timer.h>

#include "config/DeviceKind.h"
#include "controls/UiThreadCalls.h"
#include "controls/help.h"
#include "controls/help_book.h"
#include "demo/SerialSession.h"

namespace qlx {

/// Talks to one device over its port for as long as the window is open: shows all that it sends, and sends it
/// the commands of its kind.
class DemoDialog : public wxDialog, public HasHelp {
 public:
  /// `open_port` opens the port of a terminal; another one is for tests.
  DemoDialog(wxWindow* parent, DeviceKind kind, const std::wstring& port,
             SerialLink::OpenPort open_port = platform::OpenSerialPort);

  std::wstring_view help_chapter() const override { return kDemoChapter; }

 private:
  void LayOut(const std::wstring& port);
  wxSizer* MakeCommands(const std::wstring& port);
  void MakeOutput();
  wxSizer* MakeFoot();
  void BindEvents();

  void Send(const DemoCommand& command);
  void ShowWaiting();
  void Append(const std::vector<SessionEvent>& events);
  void Clear();
  /// Ends the session and then the window; one that is asked for during a command follows it.
  void Leave(int result);

  DeviceKind kind_;
  wxButton* command_ = nullptr;
  wxButton* command2_ = nullptr;
  wxTextCtrl* output_ = nullptr;
  wxCheckBox* hex_ = nullptr;
  wxButton* clear_ = nullptr;
  bool output_empty_ = true;
  bool sending_ = false;
  int close_result_ = 0;  ///< of a close that waits for a command to end
  wxTimer pause_;
  UiThreadCalls calls_;
  SerialSession session_;
};

}  // namespace qlx
