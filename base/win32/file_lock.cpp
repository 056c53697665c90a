#include "base/file_lock.h"

#include <windows.h>

namespace kelvane {

Result<> FileLock::acquire(const std::filesystem::path& file) {
  release();
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
  // Shared with nobody, and gone with its handle, also when the process is killed.
  const HANDLE handle =
      CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                  FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (handle != INVALID_HANDLE_VALUE) {
    file_ = file;
    handle_ = reinterpret_cast<std::intptr_t>(handle);
    return {};
  }
  const DWORD code = GetLastError();
  const bool held = code == ERROR_SHARING_VIOLATION || code == ERROR_ACCESS_DENIED ||
                    code == ERROR_DELETE_PENDING;
  if (code == ERROR_SHARING_VIOLATION) return Failure{"another program is writing it", held};
  return Failure{systemWords({static_cast<int>(code), std::system_category()}), held};
}

void FileLock::release() {
  if (!owned()) return;
  CloseHandle(reinterpret_cast<HANDLE>(handle_));
  handle_ = kNone;
}

}  // namespace kelvane
