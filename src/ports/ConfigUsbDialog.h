// The window that chooses a port and the USB devices behind it.
#pragma once

#include <array>

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include "controls/LimitedEdit.h"
#include "controls/help.h"
#include "controls/help_book.h"
#include "ports/UsbSelection.h"

namespace qlx {

/// Caption by kind; ends with wxID_OK or wxID_CANCEL. The selection is lent and holds what was chosen.
class ConfigUsbDialog : public wxDialog, public HasHelp {
 public:
  ConfigUsbDialog(wxWindow* parent, DeviceKind kind, UsbSelection& selection);

  std::wstring_view help_chapter() const override { return kConfigureChapter; }

 private:
  /// One device: its list and the texts of its vendor, product and serial number.
  struct Group {
    wxChoice* devices = nullptr;
    std::array<LimitedEdit*, 3> texts{};
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
  void Fill();
  static void Fill(Group& group, std::size_t item, const UsbIdentity& identity, bool enabled);

  DeviceKind kind_;
  UsbSelection& selection_;
  wxChoice* port_ = nullptr;
  Group first_;
  Group second_;
};

}  // namespace qlx
