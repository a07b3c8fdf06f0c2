// Ends with 1 when it may change settings, else with 0.
#include "platform/user_rights.h"

int main() {
  return qlx::platform::MayChangeSettings() ? 1 : 0;
}
