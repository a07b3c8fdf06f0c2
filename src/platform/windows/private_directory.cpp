#include "platform/windows/private_directory.h"

#include <array>
#include <memory>
#include <vector>

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include "platform/windows/Handle.h"

namespace qlx::platform {
namespace {

struct FreeLocal {
  void operator()(void* memory) const { LocalFree(memory); }
};
template <typename T>
using Local = std::unique_ptr<T, FreeLocal>;

/// Full access for this user (%), the administrators and the system, inherited by what is in the directory,
/// and nothing from the directory above.
constexpr wchar_t kBeforeUser[] = L"D:P(A;OICI;FA;;;BA)(A;OICI;FA;;;SY)(A;OICI;FA;;;";
constexpr wchar_t kBehindUser[] = L")";

constexpr ACCESS_MASK kChanges = FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_WRITE_EA | FILE_DELETE_CHILD |
                                 DELETE | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;

using Sid = std::vector<BYTE>;

Sid CurrentUser() {
  HANDLE raw = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw) == 0) return {};
  const Handle token(raw);
  DWORD size = 0;
  GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
  std::vector<BYTE> user(size);
  if (GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) == 0) return {};
  const PSID sid = reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
  Sid copy(GetLengthSid(sid));
  CopySid(static_cast<DWORD>(copy.size()), copy.data(), sid);
  return copy;
}

Sid WellKnown(WELL_KNOWN_SID_TYPE type) {
  Sid sid(SECURITY_MAX_SID_SIZE);
  auto size = static_cast<DWORD>(sid.size());
  return CreateWellKnownSid(type, nullptr, sid.data(), &size) != 0 ? sid : Sid();
}

/// Those whose access cannot be kept from a directory, and the stand-in for whoever makes a file in it.
bool IsTrusted(PSID sid, Sid& user) {
  if (!user.empty() && EqualSid(sid, user.data()) != 0) return true;
  for (const auto type : {WinBuiltinAdministratorsSid, WinLocalSystemSid, WinCreatorOwnerSid}) {
    Sid known = WellKnown(type);
    if (!known.empty() && EqualSid(sid, known.data()) != 0) return true;
  }
  return false;
}

bool LetsOthersChange(ACL* list, Sid& user) {
  if (list == nullptr) return true;  // no list at all: everyone may do everything
  for (DWORD i = 0; i < list->AceCount; ++i) {
    void* entry = nullptr;
    if (GetAce(list, i, &entry) == 0) return true;
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE || (allowed->Mask & kChanges) == 0) continue;
    if (!IsTrusted(&allowed->SidStart, user)) return true;
  }
  return false;
}

}  // namespace

bool CreatePrivateDirectory(const std::wstring& path) {
  Sid user = CurrentUser();
  wchar_t* raw_name = nullptr;
  if (user.empty() || ConvertSidToStringSidW(user.data(), &raw_name) == 0) return false;
  const Local<wchar_t> name(raw_name);
  const std::wstring rights = std::wstring(kBeforeUser) + name.get() + kBehindUser;
  void* raw = nullptr;
  if (ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &raw, nullptr) ==
      0)
    return false;
  const Local<void> descriptor(raw);
  SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor.get(), FALSE};
  return CreateDirectoryW(path.c_str(), &attributes) != 0;
}

bool IsPrivateDirectory(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  constexpr DWORD kKind = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & kKind) != FILE_ATTRIBUTE_DIRECTORY) return false;
  PSID owner = nullptr;
  ACL* list = nullptr;
  void* raw = nullptr;
  constexpr SECURITY_INFORMATION kAsked = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  if (GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, kAsked, &owner, nullptr, &list, nullptr, &raw) !=
      ERROR_SUCCESS)
    return false;
  const Local<void> descriptor(raw);
  Sid user = CurrentUser();
  return IsTrusted(owner, user) && !LetsOthersChange(list, user);
}

}  // namespace qlx::platform
