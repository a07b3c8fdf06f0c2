#include "app/EndProgram.h"

#include <algorithm>
#include <cstdlib>

#include "controls/message_box.h"
#include "controls/translation.h"
#include "log/LogMessage.h"
#include "platform/text.h"

namespace qlx {

void EndProgram(const std::wstring& message) {
  ShowBox(nullptr, Translated(message), BoxIcon::kExclamation);
  std::wstring line = message;
  std::ranges::replace(line, L'\n', L' ');
  LogMessage(MZP_PRINTER, LEVEL_ERROR, "CQLXConfigApp::EndProgram - %s", platform::ToUtf8(line).c_str());
  std::exit(1);
}

}  // namespace qlx
