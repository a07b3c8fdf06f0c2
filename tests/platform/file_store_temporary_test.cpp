#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, WhatACrashLeftUnderTheTemporaryNameIsRemoved) {
  Put(Path("file.new"), std::string(10000, 'x'));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path()), "new");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AnEmptyDirectoryUnderTheTemporaryNameIsRemoved) {
  fs::create_directory(Path("file.new"));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AFullDirectoryUnderTheTemporaryNameIsAFailureAndStays) {
  fs::create_directory(Path("file.new"));
  Put(Path("file.new/precious"), "kept");
  EXPECT_TRUE(Replace(Path()));
  EXPECT_EQ(Bytes(Path("file.new/precious")), "kept");
}

TEST_F(FileStoreTest, AHardLinkUnderTheTemporaryNameIsNeverWrittenThrough) {
  Put(Path("precious"), "kept");
  fs::create_hard_link(Path("precious"), Path("file.new"));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path("precious")), "kept");
  EXPECT_EQ(Names(), (std::set<std::string>{"file", "precious"}));
}

}  // namespace
}  // namespace qlx::platform
