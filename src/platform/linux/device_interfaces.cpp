#include "platform/device_interfaces.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/linux/path_text.h"
#include "platform/linux/port_directory.h"

namespace qlx::platform {
namespace {

/// Shorter names first, so that COM9 stands before COM10.
bool InPortOrder(const std::wstring& a, const std::wstring& b) {
  return std::pair(a.size(), a) < std::pair(b.size(), b);
}

class PortDirectory final : public DeviceInterfaces {
 public:
  std::vector<std::wstring> PresentPaths() const override {
    std::vector<std::wstring> paths;
    std::error_code failed;
    for (std::filesystem::directory_iterator entry(directory_, failed), end; !failed && entry != end;
         entry.increment(failed)) {
      std::error_code gone;
      // A link whose tty has been unplugged is no port any more.
      if (!entry->exists(gone)) continue;
      paths.push_back(L"\\\\?\\quillon\\" + PathText(entry->path().filename().native()));
    }
    std::ranges::sort(paths, InPortOrder);
    return paths;
  }

 private:
  std::filesystem::path directory_ = VirtualPortDirectory();
};

}  // namespace

std::unique_ptr<DeviceInterfaces> VirtualPortInterfaces() {
  return std::make_unique<PortDirectory>();
}

}  // namespace qlx::platform
