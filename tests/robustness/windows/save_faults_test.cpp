// A save meets what else a Windows does with its files.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <windows.h>
#include <gtest/gtest.h>

#include "config/ConfigDocument.h"
#include "platform/windows/Handle.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx {
namespace {

namespace fs = std::filesystem;
using platform::Handle;
using Names = std::set<std::string>;

constexpr char kOld[] = "<MZP><IB_Configuration><Prefix>old</Prefix></IB_Configuration></MZP>";
constexpr char kUnparsable[] = "<MZP><IB_Configuration>";

class SaveFaults : public testing::Test {
 protected:
  fs::path Path(const char* suffix = "") const {
    return directory_.path() / (std::string("QLXConfig.xml") + suffix);
  }

  /// Opens the document on `content` and changes one value.
  void Open(const char* content) {
    std::ofstream(Path(), std::ios::binary) << content;
    document_ = MakeConfigDocument([this](const auto&...) { ++boxes_; });
    document_->Open(Path().wstring(), true);
    document_->SetValue(L"IB_Configuration", L"Prefix", L"new");
  }

  std::string Bytes(const char* suffix = "") const {
    std::ifstream file(Path(suffix), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  Handle Hold(const char* suffix, DWORD shared) const {
    return Handle(
        CreateFileW(Path(suffix).c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  /// A directory that cannot be put away, in the place of a file.
  void Block(const char* suffix) const { fs::create_directories(Path(suffix) / "precious"); }

  Names NamesThere() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(directory_.path()))
      names.insert(entry.path().filename().string());
    return names;
  }

  void ExpectOldFileAndOneBox(const char* old) {
    EXPECT_FALSE(document_->Save());
    EXPECT_FALSE(document_->changed());
    EXPECT_EQ(boxes_, 1);
    EXPECT_EQ(Bytes(), old);
  }
  void ExpectSaved() {
    EXPECT_TRUE(document_->Save());
    EXPECT_EQ(boxes_, 0);
    EXPECT_NE(Bytes().find("<Prefix>new</Prefix>"), std::string::npos);
  }

  test::TemporaryDirectory directory_;
  std::unique_ptr<ConfigDocument> document_;
  int boxes_ = 0;
};

TEST_F(SaveFaults, AFileThatAnotherProgramKeepsFromWritersStandsAndIsSavedLater) {
  Open(kOld);
  {
    const Handle other = Hold("", FILE_SHARE_READ);
    ASSERT_TRUE(other);
    ExpectOldFileAndOneBox(kOld);
    EXPECT_EQ(NamesThere(), (Names{"QLXConfig.xml", "QLXConfig.xml.bak"}));
  }
  boxes_ = 0;
  ExpectSaved();
}

TEST_F(SaveFaults, AFileThatAnotherProgramReadsIsSavedMeanwhile) {
  Open(kOld);
  const Handle other = Hold("", FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(other);
  ExpectSaved();
  EXPECT_EQ(NamesThere(), (Names{"QLXConfig.xml", "QLXConfig.xml.bak"}));
}

TEST_F(SaveFaults, AReadOnlyFileStands) {
  Open(kOld);
  ASSERT_TRUE(SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_READONLY));
  ExpectOldFileAndOneBox(kOld);
  SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(SaveFaults, WithoutATemporaryNameTheOldFileStands) {
  Open(kOld);
  Block(".new");
  ExpectOldFileAndOneBox(kOld);
  EXPECT_TRUE(fs::exists(Path(".new") / "precious"));
}

TEST_F(SaveFaults, ACopyThatCannotBeKeptStopsNoSaveOfWhatWasRead) {
  Open(kOld);
  Block(".bak");
  ExpectSaved();
}

TEST_F(SaveFaults, AnUnparsableFileIsNotReplacedBeforeItsBytesAreKept) {
  Open(kUnparsable);
  Block(".unreadable");
  ExpectOldFileAndOneBox(kUnparsable);
  fs::remove_all(Path(".unreadable"));
  boxes_ = 0;
  ExpectSaved();
  EXPECT_EQ(Bytes(".unreadable"), kUnparsable);
}

}  // namespace
}  // namespace qlx
