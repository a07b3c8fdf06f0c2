// Where the configuration file is and what happens to it when the tool starts.
#pragma once

#include <string>

#include "config/ConfigDocument.h"
#include "config/FatalEnd.h"
#include "platform/debug_output.h"
#include "platform/program.h"

namespace qlx {

/// The file beside the executable; the fixed default path when the program's own name cannot be read or the
/// joined path does not fit.
std::wstring ConfigurationPath(const platform::Program& program);

/// Opens the configuration file, tells the debugger's channel where it is, creates it with every default when
/// it is missing or cannot be parsed, adds missing sections (empty: their keys are left to the pages'
/// defaults) and saves it when anything was added. A file without the root element goes to `end`, as does a
/// path that names no fixed place on this platform: such a file is never created.
void StartUpLoad(ConfigDocument& document, const platform::Program& program,
                 platform::DebugOutput& debug_output, const FatalEnd& end);

}  // namespace qlx
