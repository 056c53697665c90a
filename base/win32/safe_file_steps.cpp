#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>

#include "base/safe_file.h"
#include "base/text.h"

namespace kelvane {

namespace {

std::string wordsOf(DWORD code) {
  return systemWords({static_cast<int>(code), std::system_category()});
}

std::string narrow(const wchar_t* text, int length) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, length, result.data(), size, nullptr, nullptr);
  return result;
}

/// Virus scanners, indexers and backups hold a file for a moment, most often after it was written.
/// A file that goes away while somebody still has it open is refused as access denied.
bool isHeld(DWORD code) {
  return code == ERROR_SHARING_VIOLATION || code == ERROR_ACCESS_DENIED ||
         code == ERROR_LOCK_VIOLATION || code == ERROR_USER_MAPPED_FILE ||
         code == ERROR_DELETE_PENDING;
}

Failure failure(DWORD code) { return {wordsOf(code), isHeld(code)}; }

FileReading unreadable(const std::filesystem::path& path, DWORD code) {
  return {FileReading::Unreadable,
          {},
          "Cannot read " + pathText(path) + ": " + wordsOf(code),
          isHeld(code)};
}

/// Whoever is in the way of this handle is not held up by it in turn.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

struct CloseFile {
  using pointer = HANDLE;
  void operator()(HANDLE file) const { CloseHandle(file); }
};

FileReading readOpen(HANDLE file, std::size_t limit, const std::filesystem::path& path) {
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file, &size)) return unreadable(path, GetLastError());
  if (static_cast<ULONGLONG>(size.QuadPart) > limit) return tooLargeToRead(path, limit);
  // One byte more, to see the file's end; it may have grown meanwhile.
  FileReading reading{FileReading::Whole,
                      std::string(static_cast<std::size_t>(size.QuadPart) + 1, '\0')};
  std::size_t filled = 0;
  for (DWORD count = 1; count > 0; filled += count) {
    if (filled == reading.content.size()) reading.content.resize(filled * 2);
    const std::size_t room = std::min<std::size_t>(reading.content.size() - filled, 1 << 30);
    if (!ReadFile(file, reading.content.data() + filled, static_cast<DWORD>(room), &count, nullptr))
      return unreadable(path, GetLastError());
    if (filled + count > limit) return tooLargeToRead(path, limit);
  }
  reading.content.resize(filled);
  return reading;
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

FileReading FileSteps::read(const std::filesystem::path& path, std::size_t limit) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    const DWORD code = GetLastError();
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND) return {FileReading::Missing};
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
      return {FileReading::Unreadable, {}, pathText(path) + " is not a file"};
    return unreadable(path, code);
  }
  // Closed also where its content does not fit into the memory.
  const std::unique_ptr<HANDLE, CloseFile> closing(file);
  return readOpen(file, limit, path);
}

Result<> FileSteps::flush(const std::filesystem::path& file) {
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return failure(GetLastError());
  const bool ok = FlushFileBuffers(handle) != FALSE;
  const DWORD code = GetLastError();
  CloseHandle(handle);
  if (!ok) return failure(code);
  return {};
}

Result<> FileSteps::swapIn(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    return {};
  return failure(GetLastError());
}

}  // namespace kelvane
