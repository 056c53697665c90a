#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "diagnostics/link_history.h"

namespace kelvane::win32 {

/// While it lives, a fault that nothing else handles leaves a small dump and a text of versions and
/// last events in a folder, and the operator is told where, before the program ends. One at a time.
class CrashReporter {
 public:
  /// `heading` opens the text. The folder is made when it is needed; old reports in it are deleted.
  CrashReporter(const std::filesystem::path& folder, std::string heading,
                const LinkHistory& history);
  ~CrashReporter();
  CrashReporter(const CrashReporter&) = delete;
  CrashReporter& operator=(const CrashReporter&) = delete;

 private:
  static LONG WINAPI filter(EXCEPTION_POINTERS* fault);
  static DWORD WINAPI wait(void* self);
  static DWORD WINAPI dump(void* self);
  void report();
  void nameFiles(const SYSTEMTIME& time);
  bool writeDump() const;
  bool writeText(const SYSTEMTIME& time) const;
  void tell(bool dump, bool text) const;

  static constexpr std::size_t kLongestPath = 1024;

  std::wstring folder_;
  std::string heading_;
  const LinkHistory& history_;
  LPTOP_LEVEL_EXCEPTION_FILTER previousFilter_ = nullptr;
  HANDLE crashed_, written_, thread_ = nullptr;
  bool ending_ = false;
  EXCEPTION_POINTERS* fault_ = nullptr;
  DWORD faultThread_ = 0;
  LONG faults_ = 0;
  wchar_t dumpFile_[kLongestPath] = L"", textFile_[kLongestPath] = L"";
  /// The dump until it is whole.
  wchar_t dumpPart_[kLongestPath] = L"";
};

}  // namespace kelvane::win32
