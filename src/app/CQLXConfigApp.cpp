#include "app/CQLXConfigApp.h"

#include "app/CQLXConfigDlg.h"
#include "controls/message_box.h"

namespace qlx {
namespace {

constexpr char kInstanceName[] = "__MZPCONFIG__";

}  // namespace

bool CQLXConfigApp::OnInit() {
  instance_ = platform::TakeSingleInstance(kInstanceName);
  SetAppDisplayName(kProgramTitle);
  return wxApp::OnInit();
}

int CQLXConfigApp::OnRun() {
  // A second copy ends without a word.
  if (instance_) CQLXConfigDlg().ShowModal();
  return 0;
}

}  // namespace qlx

wxIMPLEMENT_APP(qlx::CQLXConfigApp);
