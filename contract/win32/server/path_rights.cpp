#include "contract/win32/server/path_rights.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <algorithm>
#include <array>
#include <memory>

namespace kelvane::com {

namespace {

/// Any of them lets a file or folder be replaced.
constexpr ACCESS_MASK kReplace =
    DELETE | FILE_DELETE_CHILD | WRITE_DAC | WRITE_OWNER | GENERIC_ALL | GENERIC_WRITE;
/// In a file: to change it; in its folder: to put another file beside it.
constexpr ACCESS_MASK kWrite = FILE_WRITE_DATA | FILE_APPEND_DATA;

/// The system, the administrators, the installer of Windows, and who creates a file, a stand-in
/// that counts for those who may do so.
constexpr std::array kTrusted{L"S-1-5-18", L"S-1-5-32-544",
                              L"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464",
                              L"S-1-3-0"};

struct Freed {
  void operator()(void* memory) const { LocalFree(memory); }
};
template <class T>
using Local = std::unique_ptr<T, Freed>;

bool isTrusted(PSID who) {
  return who && std::ranges::any_of(kTrusted, [who](const wchar_t* text) {
           PSID sid = nullptr;
           if (!ConvertStringSidToSidW(text, &sid)) return false;
           const Local<void> freed(sid);
           return EqualSid(who, sid) != FALSE;
         });
}

/// Whether an entry of a list gives somebody who is not trusted any of these rights.
bool gives(ACE_HEADER* entry, ACCESS_MASK rights) {
  if (entry->AceFlags & INHERIT_ONLY_ACE || entry->AceType == ACCESS_DENIED_ACE_TYPE) return false;
  // Entries of rarer kinds are made by nobody's installer.
  if (entry->AceType != ACCESS_ALLOWED_ACE_TYPE) return true;
  auto* const allowed = reinterpret_cast<ACCESS_ALLOWED_ACE*>(entry);
  return (allowed->Mask & rights) != 0 && !isTrusted(&allowed->SidStart);
}

bool isSafe(const std::filesystem::path& path, ACCESS_MASK rights) {
  PSID owner = nullptr;
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR all = nullptr;
  if (GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT,
                            OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                            &list, nullptr, &all) != ERROR_SUCCESS)
    return false;
  const Local<void> freed(all);
  // Without a list everybody may do everything; an owner may always change it.
  if (!list || !isTrusted(owner)) return false;
  for (DWORD place = 0; place < list->AceCount; ++place) {
    void* entry = nullptr;
    if (!GetAce(list, place, &entry) || gives(static_cast<ACE_HEADER*>(entry), rights))
      return false;
  }
  return true;
}

}  // namespace

bool onlyAdministratorsWrite(const std::filesystem::path& file) {
  std::filesystem::path folder = file.parent_path();
  if (!isSafe(file, kReplace | kWrite) || !isSafe(folder, kReplace | kWrite)) return false;
  while (folder != folder.root_path()) {
    folder = folder.parent_path();
    if (!isSafe(folder, kReplace)) return false;
  }
  return true;
}

}  // namespace kelvane::com
