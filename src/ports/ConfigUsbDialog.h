// The window that chooses a port and the USB devices behind it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "controls/LimitedEdit.h"
#include "controls/UiThreadCalls.h"
#include "controls/help.h"
#include "controls/help_book.h"
#include "ports/DeviceWatch.h"
#include "ports/UsbSelection.h"

namespace qlx {

/// Caption by kind; ends with wxID_OK or wxID_CANCEL. The selection is lent and holds what was chosen. While
/// the window is there, `look` tells on another thread what is plugged in.
class ConfigUsbDialog : public wxDialog, public HasHelp {
 public:
  ConfigUsbDialog(wxWindow* parent, DeviceKind kind, UsbSelection& selection, DeviceWatch::Look look);

  std::wstring_view help_chapter() const override { return kConfigureChapter; }

 private:
  /// One device: its list and the texts of its vendor, product and serial number.
  struct Group {
    wxChoice* devices = nullptr;
    std::array<LimitedEdit*, 3> texts{};
    wxStaticText* absence = nullptr;
  };
  struct GroupIds {
    int label;
    int devices;
    std::array<int, 3> captions;
    std::array<int, 3> texts;
  };

  wxSizer* MakePort();
  wxSizer* MakeGroup(Group& group, const GroupIds& ids, const wxString& label);
  wxSizer* MakeButtons();
  void BindEvents();
  wxStaticText* MakeAbsence();
  void TakePresent(const PresentDevices& present);
  void Fill();
  void Fill(Group& group, std::size_t item, const UsbIdentity& identity, bool enabled);
  static void ShowItems(wxChoice& list, const std::vector<std::wstring>& items,
                        std::optional<std::size_t> chosen);
  static void TellPresence(wxChoice& list, wxStaticText& absence, bool present);

  DeviceKind kind_;
  UsbSelection& selection_;
  wxChoice* port_ = nullptr;
  wxStaticText* port_absence_ = nullptr;
  Group first_;
  Group second_;
  UiThreadCalls calls_;
  DeviceWatch watch_;  ///< ends before what it reports to
};

}  // namespace qlx
