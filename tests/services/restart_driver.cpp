// Restarts the two services as the tool does and writes every report as one line: for tests from outside.
#include <iostream>
#include <string>

#include "platform/text.h"
#include "services/ServiceRestart.h"

namespace {

class PrintingTarget final : public qlx::RestartTarget {
 public:
  void OnRestartProgress(int state) override { std::cout << "progress " << state << std::endl; }

  void ShowRestartMessage(const qlx::Message& message, qlx::RestartIcon) override {
    std::string line = qlx::platform::ToUtf8(InEnglish(message));
    for (char& c : line) {
      if (c == '\n') c = '|';
    }
    std::cout << line << std::endl;
  }
};

}  // namespace

int main() {
  PrintingTarget target;
  qlx::ServiceRestart(qlx::platform::OpenServiceManager, target, qlx::RestartEnd::kAlways).Start();
  return 0;
}
