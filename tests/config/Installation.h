// A directory with the tool's configuration file, as the running tool meets it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "config/ConfigDocument.h"
#include "config/save_error.h"
#include "config/start_up.h"
#include "platform/text.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx {

/// Says that it stands beside a file of the caller's choice; everything else is the running process.
class ProgramBeside final : public platform::Program {
 public:
  explicit ProgramBeside(std::optional<std::wstring> path) : path_(std::move(path)) {}
  std::optional<std::wstring> PathBesideExecutable(std::wstring_view) const override { return path_; }
  bool IsAbsolutePath(std::wstring_view path) const override {
    return platform::ThisProgram().IsAbsolutePath(path);
  }
  std::uint32_t ProcessId() const override { return 1; }
  std::uint32_t ThreadId() const override { return 1; }
  platform::WallTime Now() const override { return {}; }

 private:
  std::optional<std::wstring> path_;
};

struct KeptLines final : platform::DebugOutput {
  void Write(std::wstring_view line) override { lines.emplace_back(line); }
  std::vector<std::wstring> lines;
};

/// What a fatal end becomes in a test.
struct Ended : std::runtime_error {
  explicit Ended(const std::wstring& message) : std::runtime_error(platform::ToUtf8(message)) {}
};

inline std::wstring Times(int count, std::wstring_view text) {
  std::wstring all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

class Installation : public testing::Test {
 protected:
  std::filesystem::path Path(const std::string& suffix = {}) const {
    return directory_ / ("QLXConfig.xml" + suffix);
  }

  void Write(std::string_view bytes) const {
    std::ofstream(Path(), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

  std::string Bytes(const std::string& suffix = {}) const {
    std::ifstream file(Path(suffix), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::unique_ptr<ConfigDocument> Document() {
    return MakeConfigDocument([this](const std::wstring& path) {
      boxes_.emplace_back(kSaveErrorTitle, SaveErrorText(kSaveErrorSentence, path));
    });
  }

  /// The document over `bytes`, which must be readable.
  std::unique_ptr<ConfigDocument> Opened(std::string_view bytes) {
    Write(bytes);
    return Reopened();
  }

  std::unique_ptr<ConfigDocument> Reopened() {
    auto document = Document();
    EXPECT_TRUE(document->Open(Path().wstring(), false)) << Bytes().substr(0, 500);
    return document;
  }

  /// Starts the tool on the directory as it is. Throws Ended.
  std::unique_ptr<ConfigDocument> Started() {
    auto document = Document();
    const ProgramBeside program(Path().wstring());
    StartUpLoad(*document, program, debug_output_, [](const std::wstring& message) { throw Ended(message); });
    return document;
  }

  std::vector<std::string> FileNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_))
      names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
  }

  test::TemporaryDirectory temporary_;
  std::filesystem::path directory_ = temporary_.path();
  std::vector<std::pair<std::wstring, std::wstring>> boxes_;
  KeptLines debug_output_;
};

}  // namespace qlx
