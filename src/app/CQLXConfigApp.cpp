#include "app/CQLXConfigApp.h"

#include "app/CQLXConfigDlg.h"
#include "controls/help.h"
#include "controls/message_box.h"
#include "controls/translation.h"
#include "platform/program.h"

namespace qlx {
namespace {

constexpr char kInstanceName[] = "__MZPCONFIG__";
constexpr wchar_t kTranslations[] = L"locale";
constexpr wchar_t kHelp[] = L"help";

}  // namespace

bool CQLXConfigApp::OnInit() {
  instance_ = platform::TakeSingleInstance(kInstanceName);
  if (const auto folder = platform::ThisProgram().PathBesideExecutable(kTranslations))
    LoadTranslations(*folder);
  SetAppDisplayName(Translated(kProgramTitle));
  if (const auto folder = platform::ThisProgram().PathBesideExecutable(kHelp)) OpenHelpByF1(*this, *folder);
  return wxApp::OnInit();
}

int CQLXConfigApp::OnRun() {
  // A second copy ends without a word.
  if (instance_) CQLXConfigDlg().ShowModal();
  return 0;
}

}  // namespace qlx

wxIMPLEMENT_APP(qlx::CQLXConfigApp);
