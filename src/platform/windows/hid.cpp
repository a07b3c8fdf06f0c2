#include "platform/hid.h"

#include <array>
#include <bit>
#include <type_traits>
#include <utility>

#include <windows.h>
#include <hidsdi.h>

#include "platform/text.h"
#include "platform/windows/Handle.h"
#include "platform/windows/hid_library.h"
#include "platform/windows/present_interfaces.h"

namespace qlx::platform {
namespace {

constexpr ULONG kBufferUnits = 128;
constexpr std::size_t kTextUnits = 127;

struct LibraryCloser {
  void operator()(HMODULE library) const { FreeLibrary(library); }
};
using Library = std::unique_ptr<std::remove_pointer_t<HMODULE>, LibraryCloser>;

struct Functions {
  decltype(&HidD_GetHidGuid) get_hid_guid = nullptr;
  decltype(&HidD_GetPreparsedData) get_preparsed_data = nullptr;
  decltype(&HidD_FreePreparsedData) free_preparsed_data = nullptr;
  decltype(&HidD_GetAttributes) get_attributes = nullptr;
  decltype(&HidD_GetProductString) get_product_string = nullptr;
  decltype(&HidD_GetSerialNumberString) get_serial_number_string = nullptr;
  decltype(&HidP_GetCaps) get_caps = nullptr;
};

template <typename Function>
bool Find(const Library& library, const char* name, Function& function) {
  function = std::bit_cast<Function>(GetProcAddress(library.get(), name));
  return function != nullptr;
}

/// For a function that nothing calls: a library without it is none that the suite works with.
bool Has(const Library& library, const char* name) {
  return GetProcAddress(library.get(), name) != nullptr;
}

bool FindAll(const Library& library, Functions& functions) {
  return Find(library, "HidD_GetHidGuid", functions.get_hid_guid) &&
         Find(library, "HidD_GetPreparsedData", functions.get_preparsed_data) &&
         Find(library, "HidD_FreePreparsedData", functions.free_preparsed_data) &&
         Find(library, "HidD_GetAttributes", functions.get_attributes) && Has(library, "HidD_FlushQueue") &&
         Has(library, "HidD_SetNumInputBuffers") &&
         Find(library, "HidD_GetProductString", functions.get_product_string) &&
         Find(library, "HidD_GetSerialNumberString", functions.get_serial_number_string) &&
         Has(library, "HidD_GetFeature") && Has(library, "HidD_SetOutputReport") &&
         Find(library, "HidP_GetCaps", functions.get_caps) && Has(library, "HidP_GetValueCaps");
}

/// Asks for nothing but the right to look, which a device that another program holds gives too.
Handle OpenToLook(const std::wstring& path) {
  return Handle(
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
}

class HidDll final : public HidLibrary {
 public:
  HidDll(Library library, const Functions& functions) : library_(std::move(library)), functions_(functions) {}

  bool Walk(const std::function<void(const HidDevice&)>& found) override {
    GUID hid_class{};
    functions_.get_hid_guid(&hid_class);
    return WalkPresentInterfaces(hid_class, [&](const std::wstring& path) {
      if (const Handle device = OpenToLook(path)) found(Describe(device.get()));
    });
  }

 private:
  HidDevice Describe(HANDLE device) const {
    HidDevice described;
    TakeIds(device, described);
    TakeUsage(device, described);
    described.serial = Text(device, functions_.get_serial_number_string);
    described.name = Text(device, functions_.get_product_string);
    return described;
  }

  void TakeIds(HANDLE device, HidDevice& described) const {
    HIDD_ATTRIBUTES attributes{};
    attributes.Size = sizeof attributes;
    if (functions_.get_attributes(device, &attributes) == FALSE) return;
    described.vendor = attributes.VendorID;
    described.product = attributes.ProductID;
  }

  void TakeUsage(HANDLE device, HidDevice& described) const {
    PHIDP_PREPARSED_DATA preparsed = nullptr;
    if (functions_.get_preparsed_data(device, &preparsed) == FALSE) return;
    HIDP_CAPS caps{};
    if (functions_.get_caps(preparsed, &caps) == HIDP_STATUS_SUCCESS) {
      described.usage_page = caps.UsagePage;
      described.usage = caps.Usage;
    }
    functions_.free_preparsed_data(preparsed);
  }

  static std::wstring Text(HANDLE device, decltype(Functions::get_product_string) read) {
    std::array<wchar_t, kBufferUnits + 1> text{};
    if (read(device, text.data(), kBufferUnits * sizeof(wchar_t)) == FALSE) return {};
    text.back() = L'\0';  // a text that fills the buffer has no end of its own
    return std::wstring(Utf16Prefix(text.data(), kTextUnits));
  }

  Library library_;
  Functions functions_;
};

}  // namespace

std::unique_ptr<HidLibrary> BindHidDll(const wchar_t* name) {
  Library library(LoadLibraryW(name));
  Functions functions;
  if (!library || !FindAll(library, functions)) return nullptr;
  return std::make_unique<HidDll>(std::move(library), functions);
}

std::unique_ptr<HidLibrary> BindHidLibrary() {
  return BindHidDll(L"hid.dll");
}

}  // namespace qlx::platform
