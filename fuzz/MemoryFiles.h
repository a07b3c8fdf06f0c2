// Files that live in memory: thousands of saves a second wait for no disk.
#pragma once

#include <cerrno>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "config/ConfigDocument.h"
#include "fuzz/require.h"
#include "platform/file_store.h"

namespace qlx {

inline constexpr wchar_t kFuzzedPath[] = L"/QLXConfig.xml";

class MemoryFiles final : public platform::FileStore {
 public:
  platform::ReadResult Read(const std::wstring& path, std::size_t limit) const override {
    const auto file = files.find(path);
    if (file == files.end()) return {platform::ReadStatus::kMissing, {}};
    if (file->second.size() > limit) return {platform::ReadStatus::kTooLarge, {}};
    return {platform::ReadStatus::kRead, file->second};
  }

  std::optional<platform::WriteFailure> Replace(const std::wstring& path, std::string_view bytes) override {
    files[path] = bytes;
    return std::nullopt;
  }

  std::optional<platform::WriteFailure> Copy(const std::wstring& path, const std::wstring& copy) override {
    const auto file = files.find(path);
    if (file == files.end()) return platform::WriteFailure{"open", ENOENT};
    files[copy] = file->second;
    return std::nullopt;
  }

  std::map<std::wstring, std::string> files;
};

/// The document of one run over `files`. A save that fails breaks a promise unless `saves_may_fail`.
inline ConfigDocument DocumentOver(MemoryFiles& files, bool saves_may_fail = false) {
  return ConfigDocument(std::make_unique<xmlclass>(platform::CreateXmlDom, files),
                        [=](const std::wstring&) { Require(saves_may_fail); });
}

}  // namespace qlx
