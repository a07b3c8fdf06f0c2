// USB HID devices in a mocked /sys, as sim/describe_hid.py describes them. Programs run under
// umockdev-wrapper.
#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include <umockdev.h>

namespace qlx::testing {

/// One at a time.
class HidTestbed {
 public:
  HidTestbed() : bed_(umockdev_testbed_new(), g_object_unref) {}

  /// Lines for describe_hid.py.
  void Plug(const std::string& devices) {
    const std::string file = RootPath("devices.txt");
    std::ofstream(file) << devices;
    const std::unique_ptr<std::FILE, decltype(&pclose)> pipe(
        popen((QLX_SOURCE_DIR "/sim/describe_hid.py " + file).c_str(), "r"), pclose);
    std::string description;
    std::array<char, 4096> block{};
    while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe.get())) {
      description.append(block.data(), size);
    }
    GError* error = nullptr;
    if (umockdev_testbed_add_from_string(bed_.get(), description.c_str(), &error) == FALSE) {
      throw std::runtime_error(error->message);
    }
  }

  /// A new one in place of the old: one that was cleared does not take the same devices again.
  void UnplugAll() {
    bed_.reset();
    bed_.reset(umockdev_testbed_new());
  }

  std::string RootPath(const std::string& path) const {
    const std::unique_ptr<char, decltype(&g_free)> root(umockdev_testbed_get_root_dir(bed_.get()), g_free);
    return std::string(root.get()) + "/" + path;
  }

 private:
  std::unique_ptr<UMockdevTestbed, decltype(&g_object_unref)> bed_;
};

}  // namespace qlx::testing
