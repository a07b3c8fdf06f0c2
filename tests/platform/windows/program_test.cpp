#include "platform/program.h"

#include <filesystem>

#include <windows.h>
#include <gtest/gtest.h>

#include "platform/windows/module_path.h"

namespace qlx::platform {
namespace {

TEST(Program, FindsAFileBesideTheExecutable) {
  wchar_t module[MAX_PATH] = {};
  ASSERT_NE(GetModuleFileNameW(nullptr, module, MAX_PATH), 0U);
  const std::filesystem::path executable(module);
  EXPECT_EQ(ThisProgram().PathBesideExecutable(executable.filename().wstring()), executable.wstring());
}

TEST(Program, ThePathBesideIsInPlaceOfAllBehindTheLastBackslash) {
  EXPECT_EQ(PathBesideModule(L"C:\\a b\\QLXConfig.exe", L"QLXConfig.xml"), L"C:\\a b\\QLXConfig.xml");
  EXPECT_EQ(PathBesideModule(L"C:\\x.exe", L"y"), L"C:\\y");
  EXPECT_EQ(PathBesideModule(L"x.exe", L"y"), std::nullopt);
}

TEST(Program, ThePathBesideFits260UnitsWithItsEnd) {
  const std::wstring directory = L"C:\\" + std::wstring(240, L'd') + L"\\";
  EXPECT_EQ(PathBesideModule(directory + L"x.exe", std::wstring(15, L'y'))->size(), 259U);
  EXPECT_EQ(PathBesideModule(directory + L"x.exe", std::wstring(16, L'y')), std::nullopt);
}

TEST(Program, ADriveOrAServerMakesAPathAbsolute) {
  EXPECT_TRUE(ThisProgram().IsAbsolutePath(L"C:\\Program Files\\x.xml"));
  EXPECT_TRUE(ThisProgram().IsAbsolutePath(L"\\\\server\\share\\x.xml"));
  for (const wchar_t* path : {L"C:x.xml", L"\\x.xml", L"/opt/x.xml", L"C:", L"x.xml"})
    EXPECT_FALSE(ThisProgram().IsAbsolutePath(path)) << path;
}

TEST(Program, IdentifiersComeFromTheKernel) {
  EXPECT_EQ(ThisProgram().ProcessId(), GetCurrentProcessId());
  EXPECT_EQ(ThisProgram().ThreadId(), GetCurrentThreadId());
}

}  // namespace
}  // namespace qlx::platform
