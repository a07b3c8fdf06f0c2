// The arguments of qlxsim.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "sim/Suite.h"

namespace qlx::sim {

/// Has `app` fill `options`, which must outlive its parsing.
void AddOptions(CLI::App& app, SuiteOptions& options);

/// How the program is a client of one that runs.
struct ControlOptions {
  std::filesystem::path socket;  ///< empty when it plays the suite itself
  std::vector<std::string> words;

  std::string Command() const;
};

/// As AddOptions, which comes first: its required options are not required of a client.
void AddControlOptions(CLI::App& app, ControlOptions& options);

}  // namespace qlx::sim
