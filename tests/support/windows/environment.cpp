#include "tests/support/environment.h"

#include <stdlib.h>

namespace qlx::test {

void SetEnvironment(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

}  // namespace qlx::test
