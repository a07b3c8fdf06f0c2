#include "tests/support/environment.h"

#include <stdlib.h>

namespace qlx::test {

void SetEnvironment(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

}  // namespace qlx::test
