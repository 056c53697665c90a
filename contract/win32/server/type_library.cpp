#include "contract/win32/server/type_library.h"

#include "contract/win32/com.h"

namespace kelvane::com {

HMODULE ownModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&ownModule), &module);
  return module;
}

std::filesystem::path ownFile() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(ownModule(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return path.substr(0, length);
    path.resize(path.size() * 2);
  }
}

HRESULT readTypeLibrary(REFIID operations, REFCLSID coclass, TypeLibrary& result) {
  HRESULT code = LoadTypeLibEx(ownFile().c_str(), REGKIND_NONE, result.library.receive());
  if (SUCCEEDED(code)) {
    code = result.library->GetTypeInfoOfGuid(operations, result.operations.receive());
  }
  if (SUCCEEDED(code)) code = result.library->GetTypeInfoOfGuid(coclass, result.coclass.receive());
  return code;
}

}  // namespace kelvane::com
