// A configuration file on disk with the document that a page would be lent.
#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "config/ConfigDocument.h"
#include "platform/text.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx {

/// Writes `content` to a file of its own, opens it, and reads back what was saved.
class ConfigFile {
 public:
  using Pairs = std::vector<std::pair<std::wstring, std::wstring>>;

  explicit ConfigFile(const std::wstring& content) {
    std::ofstream(Path(), std::ios::binary) << platform::ToUtf8(content);
    document_ = Opened();
  }
  ConfigFile(const ConfigFile&) = delete;
  ConfigFile& operator=(const ConfigFile&) = delete;

  ConfigDocument& document() { return *document_; }

  /// The keys and texts that `section` has on disk, in document order.
  Pairs Saved(const std::wstring& section) const {
    Pairs pairs;
    for (const ConfigNode& node : Opened()->ReadSection(section)) pairs.emplace_back(node.name, node.text);
    return pairs;
  }

  std::wstring Value(const std::wstring& section, const std::wstring& key) const {
    for (const auto& [name, text] : Saved(section)) {
      if (name == key) return text;
    }
    ADD_FAILURE() << platform::ToUtf8(key) << " is not in the file";
    return {};
  }

 private:
  std::filesystem::path Path() const { return directory_.path() / "QLXConfig.xml"; }

  std::unique_ptr<ConfigDocument> Opened() const {
    auto document = MakeConfigDocument(
        [](const std::wstring& path) { ADD_FAILURE() << "not saved: " << platform::ToUtf8(path); });
    EXPECT_TRUE(document->Open(Path().wstring(), false));
    return document;
  }

  test::TemporaryDirectory directory_;
  std::unique_ptr<ConfigDocument> document_;
};

}  // namespace qlx
