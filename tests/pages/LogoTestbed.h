// A configuration file, a data directory and a temporary directory on disk; pictures that need no decoder.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "config/ConfigDocument.h"
#include "pages/LogoSystem.h"
#include "pages/logo_image.h"
#include "platform/directories.h"
#include "platform/text.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx {

/// What the program's end becomes in a test.
struct Ended : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline void ThrowEnded(const std::wstring& message) {
  throw Ended(platform::ToUtf8(message));
}

class LogoTestbed : public ::testing::Test {
 protected:
  static constexpr char kDefault[] =
      "<MZP><Printer_Configuration><Code_Page>1</Code_Page></Printer_Configuration></MZP>";

  LogoTestbed() {
    std::filesystem::create_directories(root_ / "data");
    std::filesystem::create_directories(root_ / "tmp");
    data_directory_ = Folder("data");
    Open(kDefault);
  }

  /// The folder `name` with a separator at its end.
  std::wstring Folder(const std::string& name) const {
    return (root_ / name / "").make_preferred().wstring();
  }

  /// Puts `content` into the configuration file and opens it.
  void Open(const std::string& content) {
    std::ofstream(ConfigPath()) << content;
    document_ = MakeConfigDocument([this](const std::wstring&) { ++save_errors_; });
    EXPECT_TRUE(document_->Open(ConfigPath().wstring(), false));
  }

  LogoSystem System() {
    LogoSystem system;
    system.decode = [this](const std::wstring& path) { return Decode(path); };
    system.encode = Describe;
    system.files = &platform::SystemFileStore();
    system.files_in = platform::RegularFilesIn;
    system.remove_file = [this](const std::wstring& path) {
      removed_.push_back(std::filesystem::path(path).filename().string());
      return !stuck_.contains(removed_.back()) && platform::RemoveFile(path);
    };
    system.data_directory = [this] { return data_directory_; };
    system.temporary_directory = Folder("tmp");
    system.now = [] { return platform::WallTime{1'600'000'000, 250}; };
    system.log_error = [this](const std::string& line) { log_.push_back(line); };
    return system;
  }

  /// A picture file of one grey tone; its path.
  std::wstring Picture(const std::wstring& name, PixelSize size, int bits_per_pixel = 24, int grey = 255) {
    pictures_[name] = {size, bits_per_pixel, grey};
    return name;
  }

  std::wstring Data(const std::string& name) const { return (root_ / "data" / name).wstring(); }
  std::filesystem::path ConfigPath() const { return root_ / "QLXConfig.xml"; }

  void Put(const std::string& name, const std::string& content = "old") const {
    std::ofstream(root_ / name, std::ios::binary) << content;
  }
  std::string Content(const std::filesystem::path& name) const {
    std::ifstream file(root_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// Names of what is in the folder `name`, sorted.
  std::vector<std::string> Names(const std::string& name) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(root_ / name)) {
      names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
  }

  test::TemporaryDirectory directory_;
  std::filesystem::path root_ = directory_.path();
  std::unique_ptr<ConfigDocument> document_;
  std::optional<std::wstring> data_directory_;
  std::vector<std::wstring> decoded_;
  std::vector<std::string> removed_;  ///< names handed to remove_file
  std::set<std::string> stuck_;       ///< names that cannot be removed
  std::vector<std::string> log_;
  int save_errors_ = 0;

 private:
  struct Tone {
    PixelSize size;
    int bits_per_pixel;
    int grey;
  };

  std::optional<platform::DecodedImage> Decode(const std::wstring& path) {
    decoded_.push_back(path);
    const auto picture = pictures_.find(path);
    if (picture == pictures_.end()) return std::nullopt;
    platform::DecodedImage decoded{NewImage(picture->second.size), picture->second.bits_per_pixel};
    for (int y = 0; y < decoded.image.height; ++y) {
      std::ranges::fill(decoded.image.Row(y), static_cast<std::uint8_t>(picture->second.grey));
    }
    return decoded;
  }

  /// In place of a bitmap: its size and its first sample, such as "576x288 200".
  static std::vector<std::uint8_t> Describe(const platform::RgbImage& image) {
    const std::string text = std::to_string(image.width) + "x" + std::to_string(image.height) + " " +
                             std::to_string(image.Row(0).front());
    return {text.begin(), text.end()};
  }

  std::map<std::wstring, Tone> pictures_;
};

}  // namespace qlx
