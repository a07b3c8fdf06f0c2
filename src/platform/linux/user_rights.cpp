#include "platform/user_rights.h"

#include <unistd.h>

namespace qlx::platform {

bool MayChangeSettings() {
  return geteuid() == 0;
}

}  // namespace qlx::platform
