// Who may do what with a file or directory, as text in the system's own language for it.
#pragma once

#include <filesystem>
#include <string>

#include <windows.h>
#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>

namespace qlx::test {

inline std::wstring Rights(const std::filesystem::path& path) {
  void* descriptor = nullptr;
  const DWORD error = GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                            nullptr, nullptr, nullptr, &descriptor);
  EXPECT_EQ(error, static_cast<DWORD>(ERROR_SUCCESS));
  wchar_t* text = nullptr;
  ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                       &text, nullptr);
  const std::wstring rights(text);
  LocalFree(text);
  LocalFree(descriptor);
  return rights;
}

inline void SetRights(const std::filesystem::path& path, const wchar_t* rights) {
  void* descriptor = nullptr;
  ASSERT_TRUE(
      ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor, nullptr));
  EXPECT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor));
  LocalFree(descriptor);
}

}  // namespace qlx::test
