// The way from the configuration file to the log's settings.
#pragma once

#include <string>
#include <vector>

#include "config/ConfigNode.h"

namespace qlx {

/// The children of Logging_Configuration in the file `path`, in document order; empty when the file cannot
/// be loaded or has no such section.
std::vector<ConfigNode> ReadLoggingSection(const std::wstring& path);

}  // namespace qlx
