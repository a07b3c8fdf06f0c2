// The arguments of qlxsim.
#pragma once

#include <CLI/App.hpp>

#include "sim/Suite.h"

namespace qlx::sim {

/// Has `app` fill `options`, which must outlive its parsing.
void AddOptions(CLI::App& app, SuiteOptions& options);

}  // namespace qlx::sim
