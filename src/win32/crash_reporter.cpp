#include "win32/crash_reporter.h"

#include <dbghelp.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <exception>
#include <string_view>

#include "diagnostics/report.h"

namespace kelvane::win32 {

namespace {

constexpr std::size_t kReportsKept = 9;
/// What the filter of a faulting thread may use of its stack, bytes: also when that ran full.
constexpr ULONG kStackForFilter = 16384;
/// Longest time for the files, ms. The other threads, which may be saving lists, go on meanwhile.
constexpr DWORD kLongestReport = 20000;
/// Longest time for the dump alone, ms: then the operator is told without one.
constexpr DWORD kLongestDump = 15000;
/// The code of a fault that the language itself found, such as an exception that nobody caught.
constexpr DWORD kTerminated = 0xE0000001;

/// Windows hands its filter no argument by which it could find the object.
std::atomic<CrashReporter*> reporter{nullptr};

/// A file that lines are written to, each at once: what happens next is not sure.
class FileLines {
 public:
  explicit FileLines(const wchar_t* path)
      : file_(CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  ~FileLines() {
    if (open()) CloseHandle(file_);
  }
  FileLines(const FileLines&) = delete;
  FileLines& operator=(const FileLines&) = delete;

  bool open() const { return file_ != INVALID_HANDLE_VALUE; }
  HANDLE handle() const { return file_; }
  void line(std::string_view text) const {
    DWORD written = 0;
    WriteFile(file_, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    WriteFile(file_, "\r\n", 2, &written, nullptr);
  }

 private:
  HANDLE file_;
};

/// The library's name and the place in it, e.g. "Sondrel.dll+1a2b"; the address where it has none.
std::string_view placeOf(const void* address, std::span<char> buffer) {
  HMODULE module = nullptr;
  wchar_t path[MAX_PATH] = L"";
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      static_cast<const wchar_t*>(address), &module);
  if (module) GetModuleFileNameW(module, path, MAX_PATH);
  const wchar_t* name = std::max<const wchar_t*>(wcsrchr(path, L'\\') + (*path ? 1 : 0), path);
  const auto offset = static_cast<const char*>(address) - reinterpret_cast<const char*>(module);
  const int length =
      std::snprintf(buffer.data(), buffer.size(), module ? "%ls+%llx" : "%lsaddress %llx", name,
                    static_cast<unsigned long long>(offset));
  return {buffer.data(),
          std::min(buffer.size() - 1, static_cast<std::size_t>(std::max(length, 0)))};
}

/// A function of a library that may be missing, null where it has none of that name.
template <typename Function>
Function function(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(library ? GetProcAddress(library, name) : nullptr));
}

[[noreturn]] void terminated() {
  RaiseException(kTerminated, EXCEPTION_NONCONTINUABLE, 0, nullptr);
  TerminateProcess(GetCurrentProcess(), kTerminated);
  for (;;) Sleep(INFINITE);
}

}  // namespace

CrashReporter::CrashReporter(const std::filesystem::path& folder, std::string heading,
                             const LinkHistory& history)
    : folder_(folder.wstring()),
      heading_(std::move(heading)),
      history_(history),
      crashed_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      written_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  pruneCrashReports(folder, kReportsKept);
  // A thread of its own writes the report: the one that fell has maybe no stack left.
  thread_ = CreateThread(nullptr, 0, wait, this, 0, nullptr);
  ULONG stack = kStackForFilter;
  SetThreadStackGuarantee(&stack);
  reporter = this;
  previousFilter_ = SetUnhandledExceptionFilter(filter);
  std::set_terminate(terminated);
}

CrashReporter::~CrashReporter() {
  SetUnhandledExceptionFilter(previousFilter_);
  reporter = nullptr;
  ending_ = true;
  SetEvent(crashed_);
  WaitForSingleObject(thread_, INFINITE);
  for (const HANDLE handle : {thread_, crashed_, written_}) CloseHandle(handle);
}

LONG WINAPI CrashReporter::filter(EXCEPTION_POINTERS* fault) {
  CrashReporter* const self = reporter;
  if (!self) return EXCEPTION_CONTINUE_SEARCH;
  // While one fault is being told another thread may fall too: the first one is the cause.
  if (InterlockedIncrement(&self->faults_) > 1) Sleep(INFINITE);
  self->fault_ = fault;
  self->faultThread_ = GetCurrentThreadId();
  SetEvent(self->crashed_);
  // What fell may hold something that the report needs: then the program ends without one.
  if (WaitForSingleObject(self->written_, kLongestReport) == WAIT_OBJECT_0)
    WaitForSingleObject(self->thread_, INFINITE);
  return EXCEPTION_EXECUTE_HANDLER;
}

DWORD WINAPI CrashReporter::wait(void* parameter) {
  auto* self = static_cast<CrashReporter*>(parameter);
  WaitForSingleObject(self->crashed_, INFINITE);
  if (!self->ending_) self->report();
  return 0;
}

void CrashReporter::report() {
  SYSTEMTIME time{};
  GetSystemTime(&time);
  nameFiles(time);
  const bool text = writeText(time);
  // The words must not wait for a dump that takes long: it has a thread of its own.
  const HANDLE dumper = CreateThread(nullptr, 0, dump, this, 0, nullptr);
  DWORD dumped = FALSE;
  if (dumper && WaitForSingleObject(dumper, kLongestDump) == WAIT_OBJECT_0)
    GetExitCodeThread(dumper, &dumped);
  SetEvent(written_);
  tell(dumped != FALSE, text);
}

DWORD WINAPI CrashReporter::dump(void* self) {
  return static_cast<const CrashReporter*>(self)->writeDump();
}

void CrashReporter::nameFiles(const SYSTEMTIME& time) {
  // The folder may hang below one that is not there yet either.
  for (std::size_t at = folder_.find(L'\\', 3); at != std::wstring::npos;
       at = folder_.find(L'\\', at + 1)) {
    folder_[at] = L'\0';
    CreateDirectoryW(folder_.c_str(), nullptr);
    folder_[at] = L'\\';
  }
  CreateDirectoryW(folder_.c_str(), nullptr);
  wchar_t stem[kLongestPath];
  _snwprintf(stem, kLongestPath - 8, L"%ls\\crash-%04u%02u%02u-%02u%02u%02u", folder_.c_str(),
             time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
  stem[kLongestPath - 8] = L'\0';
  _snwprintf(dumpFile_, kLongestPath, L"%ls.dmp", stem);
  _snwprintf(dumpPart_, kLongestPath, L"%ls.part", stem);
  _snwprintf(textFile_, kLongestPath, L"%ls.txt", stem);
}

bool CrashReporter::writeText(const SYSTEMTIME& time) const {
  const FileLines file(textFile_);
  if (!file.open()) return false;
  std::array<char, 400> line;
  std::array<char, 300> place;
  const EXCEPTION_RECORD& record = *fault_->ExceptionRecord;
  const std::string_view at = placeOf(record.ExceptionAddress, place);
  file.line(heading_);
  std::snprintf(line.data(), line.size(), "Fault %08lx at %.*s in thread %lu", record.ExceptionCode,
                static_cast<int>(at.size()), at.data(), faultThread_);
  file.line(line.data());
  std::snprintf(line.data(), line.size(), "%04u-%02u-%02u %02u:%02u:%02u UTC", time.wYear,
                time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
  file.line(line.data());
  file.line("\r\nEvents of the links, the oldest first");
  for (std::size_t i = 0; i < history_.size(); ++i) file.line(writeEvent(history_.at(i), line));
  return true;
}

bool CrashReporter::writeDump() const {
  // Loaded here and not with the program: it is large, and hardly ever needed.
  const HMODULE library = LoadLibraryExW(L"dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  const auto write = function<decltype(&MiniDumpWriteDump)>(library, "MiniDumpWriteDump");
  const auto initialize = function<decltype(&SymInitialize)>(library, "SymInitialize");
  if (!write) return false;
  // Where nobody began to read symbols the dump reads those of every library first: under Wine that
  // takes half a minute, and a dump holds none of them.
  if (initialize) initialize(GetCurrentProcess(), nullptr, FALSE);
  {
    const FileLines file(dumpPart_);
    MINIDUMP_EXCEPTION_INFORMATION about{faultThread_, fault_, FALSE};
    if (!file.open() || !write(GetCurrentProcess(), GetCurrentProcessId(), file.handle(),
                               MiniDumpNormal, &about, nullptr, nullptr))
      return false;
  }
  return MoveFileW(dumpPart_, dumpFile_) != FALSE;
}

void CrashReporter::tell(bool dump, bool text) const {
  wchar_t words[2 * kLongestPath + 200];
  const wchar_t* first = text ? textFile_ : L"";
  const wchar_t* second = dump ? dumpFile_ : L"";
  _snwprintf(words, std::size(words) - 1,
             L"Kelvane has met a fault and has to end. Your lists and settings are as they were "
             L"last saved.%ls\n%ls\n%ls",
             text || dump ? L"\n\nA report of it is here:" : L"\n\nNo report could be written.",
             first, second);
  words[std::size(words) - 1] = L'\0';
  MessageBoxW(nullptr, words, L"Kelvane",
              MB_OK | MB_ICONERROR | MB_SETFOREGROUND | MB_TOPMOST | MB_TASKMODAL);
}

}  // namespace kelvane::win32
