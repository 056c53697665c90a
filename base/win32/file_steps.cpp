#include <windows.h>

#include <array>

#include "base/safe_file.h"
#include "base/text.h"

namespace kelvane {

namespace {

FileResult failure(DWORD code) {
  return {false, systemWords({static_cast<int>(code), std::system_category()})};
}

std::string narrow(const wchar_t* text, int length) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, length, result.data(), size, nullptr, nullptr);
  return result;
}

/// Virus scanners and indexers hold a file for a moment after it was written.
bool passesSoon(DWORD code) {
  return code == ERROR_SHARING_VIOLATION || code == ERROR_ACCESS_DENIED ||
         code == ERROR_LOCK_VIOLATION;
}

}  // namespace

std::string systemWords(const std::error_code& error) {
  if (error.category() != std::system_category()) return error.message();
  std::array<wchar_t, 512> text;
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(error.value()), 0, text.data(), text.size(), nullptr);
  if (length == 0) return "error " + std::to_string(error.value());
  return std::string(trimmed(narrow(text.data(), static_cast<int>(length))));
}

FileResult FileSteps::flush(const std::filesystem::path& file) {
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return failure(GetLastError());
  const bool ok = FlushFileBuffers(handle) != FALSE;
  const DWORD code = GetLastError();
  CloseHandle(handle);
  return ok ? FileResult{} : failure(code);
}

FileResult FileSteps::swapIn(const std::filesystem::path& from, const std::filesystem::path& to) {
  constexpr int kTries = 5;
  constexpr DWORD kPause = 10;
  DWORD code = 0;
  for (int i = 0; i < kTries; ++i) {
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      return {};
    }
    code = GetLastError();
    if (!passesSoon(code)) break;
    Sleep(kPause);
  }
  return failure(code);
}

}  // namespace kelvane
