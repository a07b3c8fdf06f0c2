#include "log/logging_section.h"

#include <exception>

#include "config/ConfigDocument.h"

namespace qlx {

std::vector<ConfigNode> ReadLoggingSection(const std::wstring& path) {
  try {
    const auto document = MakeConfigDocument([](const std::wstring&) {});
    document->Open(path, false);
    return document->ReadSection(L"Logging_Configuration");
  } catch (const std::exception&) {
    // Without a parser the log keeps its defaults; nobody could be told through the log itself.
    return {};
  }
}

}  // namespace qlx
