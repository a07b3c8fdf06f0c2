#include "platform/user_rights.h"

#include <windows.h>

#include "platform/windows/Handle.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx::platform {
namespace {

/// This process's token, elevated, or the token of the same user without elevation.
Handle Token(bool elevated) {
  HANDLE opened = nullptr;
  OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &opened);
  Handle token(opened);
  if (elevated) return token;
  TOKEN_LINKED_TOKEN linked{};
  DWORD size = sizeof linked;
  GetTokenInformation(token.get(), TokenLinkedToken, &linked, size, &size);
  return Handle(linked.LinkedToken);
}

/// Whether a process may change settings that runs `program` by `token`; 2 and more when it does not run.
DWORD AnswerOf(const std::filesystem::path& program, const Handle& token) {
  HANDLE primary = nullptr;
  DuplicateTokenEx(token.get(), TOKEN_ALL_ACCESS, nullptr, SecurityImpersonation, TokenPrimary, &primary);
  const Handle own(primary);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (!CreateProcessAsUserW(own.get(), program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                            &start, &started))
    return 2;
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  WaitForSingleObject(process.get(), INFINITE);
  DWORD code = 3;
  GetExitCodeProcess(process.get(), &code);
  return code;
}

/// As long as it lives, Wine shows a program of this file name the version of a system without elevation.
class SystemWithoutElevation {
 public:
  explicit SystemWithoutElevation(const std::wstring& file_name)
      : key_(L"Software\\Wine\\AppDefaults\\" + file_name) {
    constexpr wchar_t kVersion[] = L"winxp64";
    RegSetKeyValueW(HKEY_CURRENT_USER, key_.c_str(), L"Version", REG_SZ, kVersion, sizeof kVersion);
  }
  SystemWithoutElevation(const SystemWithoutElevation&) = delete;
  SystemWithoutElevation& operator=(const SystemWithoutElevation&) = delete;
  ~SystemWithoutElevation() { RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str()); }

 private:
  std::wstring key_;
};

std::filesystem::path Child() {
  return std::filesystem::absolute(QLX_RIGHTS_CHILD).make_preferred();
}

TEST(UserRights, AnElevatedProcessMayChangeSettings) {
  EXPECT_EQ(AnswerOf(Child(), Token(true)), 1U);
}

TEST(UserRights, AProcessWithoutElevationMayNotChangeSettings) {
  EXPECT_EQ(AnswerOf(Child(), Token(false)), 0U);
}

TEST(UserRights, WhereTheSystemKnowsNoElevationEverybodyMayChangeSettings) {
  const test::TemporaryDirectory directory;
  const auto program = directory.path() / (directory.path().filename().wstring() + L".exe");
  std::filesystem::copy_file(Child(), program);
  EXPECT_EQ(AnswerOf(program, Token(false)), 0U);
  const SystemWithoutElevation old(program.filename().wstring());
  EXPECT_EQ(AnswerOf(program, Token(false)), 1U);
}

}  // namespace
}  // namespace qlx::platform
