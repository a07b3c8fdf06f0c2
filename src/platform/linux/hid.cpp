#include "platform/hid.h"

#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <hidapi/hidapi.h>

#include "platform/linux/hidapi_library.h"
#include "platform/linux/report_descriptor.h"
#include "platform/text.h"

namespace qlx::platform {
namespace {

constexpr std::size_t kTextUnits = 127;

struct LibraryCloser {
  void operator()(void* library) const { dlclose(library); }
};
using Library = std::unique_ptr<void, LibraryCloser>;

struct Functions {
  decltype(&hid_init) init = nullptr;
  decltype(&hid_exit) exit = nullptr;
  decltype(&hid_enumerate) enumerate = nullptr;
  decltype(&hid_free_enumeration) free_enumeration = nullptr;
  decltype(&hid_error) error = nullptr;
};

template <typename Function>
bool Find(const Library& library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library.get(), name));
  return function != nullptr;
}

/// The report descriptor that the kernel shows to everybody, also where the device itself may not be opened;
/// empty when the device has gone.
std::vector<std::uint8_t> ReportDescriptor(std::string_view device) {
  const std::string name(device.substr(device.rfind('/') + 1));
  std::ifstream file("/sys/class/hidraw/" + name + "/device/report_descriptor", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::wstring Text(const wchar_t* text) {
  return text == nullptr ? std::wstring() : std::wstring(Utf16Prefix(text, kTextUnits));
}

class HidApi final : public HidLibrary {
 public:
  HidApi(Library library, const Functions& functions) : library_(std::move(library)), functions_(functions) {}
  HidApi(const HidApi&) = delete;
  HidApi& operator=(const HidApi&) = delete;
  ~HidApi() override { functions_.exit(); }

  bool Walk(const std::function<void(const HidDevice&)>& found) override {
    if (functions_.init() != 0) return false;
    const std::unique_ptr<hid_device_info, decltype(functions_.free_enumeration)> all(
        functions_.enumerate(0, 0), functions_.free_enumeration);
    if (!all) return FoundNone();
    // The library tells of nested collections too, one record after the other for each device.
    std::string_view last;
    for (const hid_device_info* record = all.get(); record != nullptr; record = record->next) {
      const std::string_view path = record->path == nullptr ? "" : record->path;
      if (record != all.get() && path == last) continue;
      last = path;
      Report(*record, found);
    }
    return true;
  }

 private:
  /// The library gives the same empty list for no device and for a failure; only its message tells them
  /// apart.
  bool FoundNone() const {
    const wchar_t* const message = functions_.error(nullptr);
    return message != nullptr && std::wstring_view(message).starts_with(L"No HID devices");
  }

  static void Report(const hid_device_info& record, const std::function<void(const HidDevice&)>& found) {
    HidDevice device = {record.vendor_id, record.product_id,          record.usage_page,
                        record.usage,     Text(record.serial_number), Text(record.product_string)};
    for (const HidUsage& top : TopLevelUsages(ReportDescriptor(record.path == nullptr ? "" : record.path))) {
      device.usage_page = top.page;
      device.usage = top.usage;
      found(device);
    }
  }

  Library library_;
  Functions functions_;
};

}  // namespace

std::unique_ptr<HidLibrary> BindHidApi(const char* name) {
  Library library(dlopen(name, RTLD_NOW | RTLD_LOCAL));
  Functions functions;
  if (!library || !Find(library, "hid_init", functions.init) || !Find(library, "hid_exit", functions.exit) ||
      !Find(library, "hid_enumerate", functions.enumerate) ||
      !Find(library, "hid_free_enumeration", functions.free_enumeration) ||
      !Find(library, "hid_error", functions.error)) {
    return nullptr;
  }
  return std::make_unique<HidApi>(std::move(library), functions);
}

std::unique_ptr<HidLibrary> BindHidLibrary() {
  return BindHidApi("libhidapi-hidraw.so.0");
}

}  // namespace qlx::platform
