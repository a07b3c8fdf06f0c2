// The program: one copy at a time, one window.
#pragma once

#include <memory>

#include <wx/app.h>

#include "platform/single_instance.h"

namespace qlx {

class CQLXConfigApp : public wxApp {
 public:
  bool OnInit() override;
  /// Shows the main window and returns the process's exit code once it is closed.
  int OnRun() override;

 private:
  std::unique_ptr<platform::SingleInstance> instance_;
};

}  // namespace qlx
