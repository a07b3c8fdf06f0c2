// A start of the tool on a file that was made to break it.
#pragma once

#include "tests/config/Installation.h"
#include "tests/support/memory_growth.h"

namespace qlx {

using Names = std::vector<std::string>;

class HostileFile : public Installation {
 protected:
  void ExpectDefaults(const ConfigDocument& document) {
    EXPECT_TRUE(document.changed());
    EXPECT_EQ(const_cast<ConfigDocument&>(document).ReadSection(L"IB_Configuration").size(), 6U);
    EXPECT_TRUE(Reopened()->Contains(L"MZP//MSR_Configuration/End_Sentinel"));
  }

  /// Not well-formed: the defaults take the file's place and its bytes stay beside them.
  void ExpectReplaced(const std::string& bytes) {
    SCOPED_TRACE(bytes.substr(0, 200));
    Write(bytes);
    ExpectDefaults(*Started());
    EXPECT_TRUE(Bytes(".unreadable") == bytes);
    EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml", "QLXConfig.xml.unreadable"}));
  }

  /// What cannot be replaced: the tool goes on with the defaults, says that it could not save and touches
  /// nothing.
  void ExpectSaveError() {
    const auto document = Started();
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_EQ(boxes_[0].first, L"Save File Error!");
    EXPECT_FALSE(document->changed());
    EXPECT_EQ(document->ReadSection(L"IB_Configuration").size(), 6U);
    EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
  }

  void ExpectSmallGrowth(const std::string& bytes) {
    Write(bytes);
    const auto growth = test::MemoryGrowth([&] { return Started() != nullptr; });
    ASSERT_TRUE(growth);
#ifndef QLX_ADDRESS_SANITIZER  // the sanitizer's own memory says nothing
    constexpr std::size_t kConstant = std::size_t{128} << 20;
    EXPECT_LE(static_cast<std::size_t>(*growth) * 1024, 12 * bytes.size() + kConstant)
        << bytes.substr(0, 100);
    RecordProperty("growth", std::to_string(*growth));
#endif
  }
};

}  // namespace qlx
