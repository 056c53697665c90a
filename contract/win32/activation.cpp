#include "contract/win32/activation.h"

#include <cstdio>

#include "contract/win32/com.h"

namespace kelvane::com {

namespace {

/// A damaged file is reported to the caller, not to the operator by a box of the system's own.
class QuietErrors {
 public:
  QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { SetThreadErrorMode(before_, nullptr); }

 private:
  DWORD before_ = 0;
};

OpenedComponent refused(const char* step, HRESULT code) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%08lX", static_cast<unsigned long>(code));
  return {{}, std::string(step) + " (" + digits + ")"};
}

HRESULT lastError() {
  const DWORD code = GetLastError();
  return code == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(code);
}

bool isAbsent(const std::filesystem::path& file) {
  if (GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES) return false;
  const DWORD code = GetLastError();
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

OpenedComponent createRegistered(REFCLSID component) {
  ComPtr<IDispatch> object;
  const HRESULT code = CoCreateInstance(component, nullptr, CLSCTX_INPROC_SERVER,
                                        __uuidof(IDispatch), object.receiveAny());
  if (FAILED(code)) return refused("no file beside the program, and none registered", code);
  return {std::move(object), {}};
}

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

OpenedComponent createFrom(HMODULE library, REFCLSID component) {
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  if (!getClassObject) return refused("the file beside the program is no component", lastError());
  ComPtr<IClassFactory> factory;
  HRESULT code = getClassObject(component, __uuidof(IClassFactory), factory.receiveAny());
  if (SUCCEEDED(code) && !factory) code = E_UNEXPECTED;
  if (FAILED(code)) return refused("the file beside the program is another component", code);
  ComPtr<IDispatch> object;
  code = factory->CreateInstance(nullptr, __uuidof(IDispatch), object.receiveAny());
  if (SUCCEEDED(code) && !object) code = E_UNEXPECTED;
  if (FAILED(code)) return refused("the component cannot be created", code);
  return {std::move(object), {}};
}

OpenedComponent loadBeside(const std::filesystem::path& file, REFCLSID component) {
  const QuietErrors quiet;
  // The folder of the file and the system's own: never the current one or the search path.
  const HMODULE library = LoadLibraryExW(
      file.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (!library) return refused("the file beside the program cannot be loaded", lastError());
  OpenedComponent opened = createFrom(library, component);
  if (!opened) FreeLibrary(library);  // else it stays for the run: its objects live in it
  return opened;
}

}  // namespace

std::filesystem::path programFolder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return std::filesystem::path(path.substr(0, length)).parent_path();
    path.resize(path.size() * 2);
  }
}

OpenedComponent openComponent(const std::wstring& fileName, REFCLSID component) {
  return openComponent(programFolder(), fileName, component);
}

OpenedComponent openComponent(const std::filesystem::path& folder, const std::wstring& fileName,
                              REFCLSID component) {
  const std::filesystem::path file = folder / fileName;
  return isAbsent(file) ? createRegistered(component) : loadBeside(file, component);
}

}  // namespace kelvane::com
