#include "base/win32/known_folders.h"

#include <windows.h>

#include <objbase.h>
#include <shlobj.h>

#include <memory>
#include <system_error>

namespace kelvane {

std::filesystem::path userDataFolder() {
  wchar_t* path = nullptr;
  const HRESULT code = SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_DEFAULT, nullptr, &path);
  const std::unique_ptr<wchar_t, decltype(&CoTaskMemFree)> owned(path, CoTaskMemFree);
  if (FAILED(code)) throw std::system_error(code, std::system_category(), "local application data");
  return std::filesystem::path(path) / "Kelvane";
}

}  // namespace kelvane
