// The environment of the test's own process, which its children inherit.
#pragma once

#include <string>

namespace qlx::test {

void SetEnvironment(const std::string& name, const std::string& value);

}  // namespace qlx::test
