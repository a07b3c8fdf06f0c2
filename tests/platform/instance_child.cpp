// Takes the lock of that name as a further copy of the tool: says "taken" or "refused", and holds the lock
// until it is killed when asked to.
// usage: instance_child NAME [hold]
#include <future>
#include <iostream>

#include "platform/single_instance.h"

int main(int count, char** arguments) {
  const auto lock = qlx::platform::TakeSingleInstance(arguments[1]);
  std::cout << (lock ? "taken" : "refused") << std::endl;
  if (count == 3) std::promise<void>().get_future().wait();
}
