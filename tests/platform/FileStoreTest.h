// A directory of its own for each test of the file store.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/file_store.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx::platform {

namespace fs = std::filesystem;

inline constexpr std::size_t kLimit = 1000;

class FileStoreTest : public testing::Test {
 protected:
  fs::path Path(const char* name = "file") const { return directory_ / name; }

  static void Put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  ReadStatus ReadStatusOf(const fs::path& path) const { return store_.Read(path.wstring(), kLimit).status; }
  std::optional<WriteFailure> Replace(const fs::path& path, std::string_view bytes = "new") const {
    return store_.Replace(path.wstring(), bytes);
  }
  std::optional<WriteFailure> Copy(const fs::path& path, const fs::path& copy) const {
    return store_.Copy(path.wstring(), copy.wstring());
  }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory_))
      names.insert(entry.path().filename().string());
    return names;
  }

  test::TemporaryDirectory temporary_;
  fs::path directory_ = temporary_.path();
  FileStore& store_ = SystemFileStore();
};

}  // namespace qlx::platform
