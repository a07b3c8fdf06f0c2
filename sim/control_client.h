// One command to a simulator that runs elsewhere.
#pragma once

#include <filesystem>
#include <string>

namespace qlx::sim {

/// Sends `command` to the control socket at `path` and waits for the answer's lines. Throws
/// std::runtime_error when nobody answers.
std::string AskSimulator(const std::filesystem::path& path, const std::string& command);

/// Whether `answer` says that the command was done.
bool IsOk(const std::string& answer);

}  // namespace qlx::sim
