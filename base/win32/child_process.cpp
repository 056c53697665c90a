#include "base/child_process.h"

#include <windows.h>

#include <utility>
#include <vector>

#include "base/program_line.h"
#include "base/text.h"
#include "base/win32/utf16.h"

namespace kelvane {

namespace {

std::string wordsFor(DWORD error) {
  wchar_t text[400];
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                     text, static_cast<DWORD>(std::size(text)), nullptr);
  if (length == 0) return "Windows error " + std::to_string(error) + ".";
  return std::string(trimmed(narrow({text, length})));
}

/// The full name of a program: as it stands, else in the system's folder or one of the search path.
/// Not beside this program, nor in the folder that it was started in.
std::wstring fullName(const std::string& program) {
  const std::wstring name = wide(program);
  std::wstring folders(32768, L'\0');
  folders.resize(GetSystemDirectoryW(folders.data(), MAX_PATH));
  std::wstring path(32768, L'\0');
  path.resize(GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
  folders += L";" + path;
  std::wstring found(32768, L'\0');
  found.resize(SearchPathW(folders.c_str(), name.c_str(), L".exe", static_cast<DWORD>(found.size()),
                           found.data(), nullptr));
  return found;
}

/// A job whose processes end with its last handle, and so with this process however it ends.
HANDLE makeJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  if (SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits))
    return job;
  const DWORD why = GetLastError();
  if (job) CloseHandle(job);
  SetLastError(why);
  return nullptr;
}

}  // namespace

namespace {

/// The only handle that a child inherits: where it writes to. The writing end is closed here when
/// the child has it.
class ChildStreams {
 public:
  explicit ChildStreams(Written written) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    constexpr DWORD kRoom = 65536;
    if (written != Written::Kept || !CreatePipe(&reading_, &writing_, &inherited, kRoom)) return;
    SetHandleInformation(reading_, HANDLE_FLAG_INHERIT, 0);
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    room_.resize(size);
    list_ = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room_.data());
    if (!InitializeProcThreadAttributeList(list_, 1, 0, &size)) list_ = nullptr;
    if (list_)
      UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &writing_,
                                sizeof writing_, nullptr, nullptr);
  }
  ~ChildStreams() {
    if (list_) DeleteProcThreadAttributeList(list_);
    if (writing_) CloseHandle(writing_);
    if (reading_) CloseHandle(reading_);
  }
  ChildStreams(const ChildStreams&) = delete;
  ChildStreams& operator=(const ChildStreams&) = delete;

  bool kept() const { return list_ != nullptr; }
  void addTo(STARTUPINFOEXW& how) const {
    how.StartupInfo.cb = sizeof(STARTUPINFOW);
    if (!kept()) return;
    how.StartupInfo.cb = sizeof how;
    how.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    how.StartupInfo.hStdOutput = how.StartupInfo.hStdError = writing_;
    how.lpAttributeList = list_;
  }
  HANDLE takeReading() { return std::exchange(reading_, nullptr); }

 private:
  HANDLE reading_ = nullptr;
  HANDLE writing_ = nullptr;
  std::vector<char> room_;
  LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
};

}  // namespace

struct ChildProcess::Native {
  HANDLE job = nullptr;
  HANDLE process = nullptr;
  HANDLE written = nullptr;  ///< the reading end of its streams

  void closeWritten() {
    if (written) CloseHandle(std::exchange(written, nullptr));
  }

  void forget() {
    if (process) CloseHandle(process);
    if (job) CloseHandle(job);
    process = job = nullptr;
  }
};

ChildProcess::ChildProcess() : native_(std::make_unique<Native>()) {}

ChildProcess::~ChildProcess() {
  end();
  native_->closeWritten();
}

Result<> ChildProcess::start(const std::string& line, Written written) {
  end();
  native_->closeWritten();
  const Result<std::string> asked = programOf(line);
  if (!asked) return asked.failure();
  const std::wstring program = fullName(*asked);
  if (program.empty()) return Failure{"There is no program " + *asked + "."};
  std::wstring words = wide(line);
  ChildStreams streams(written);
  STARTUPINFOEXW how{};
  streams.addTo(how);
  PROCESS_INFORMATION child{};
  // It joins the job before it has run at all, and could have started others.
  DWORD flags = CREATE_NO_WINDOW | CREATE_SUSPENDED;
  if (streams.kept()) flags |= EXTENDED_STARTUPINFO_PRESENT;
  if (!CreateProcessW(program.c_str(), words.data(), nullptr, nullptr, streams.kept(), flags,
                      nullptr, nullptr, &how.StartupInfo, &child))
    return Failure{wordsFor(GetLastError())};
  native_->written = streams.takeReading();
  native_->process = child.hProcess;
  native_->job = makeJob();
  Result<> tied;
  if (!native_->job || !AssignProcessToJobObject(native_->job, child.hProcess))
    tied = Failure{"It could not be tied to this program: " + wordsFor(GetLastError())};
  else
    ResumeThread(child.hThread);
  CloseHandle(child.hThread);
  // It would outlive this program, and hold the radio.
  if (!tied) end();
  return tied;
}

void ChildProcess::end() {
  if (native_->process) {
    // A child's own children go with the job; the child itself also where there is no job.
    TerminateJobObject(native_->job, 0);
    TerminateProcess(native_->process, 0);
    WaitForSingleObject(native_->process, 100);
  }
  native_->forget();
}

bool ChildProcess::running() {
  if (!native_->process) return false;
  if (WaitForSingleObject(native_->process, 0) == WAIT_TIMEOUT) return true;
  native_->forget();
  return false;
}

std::string ChildProcess::takeWritten() {
  std::string text;
  DWORD waiting = 0;
  while (native_->written &&
         PeekNamedPipe(native_->written, nullptr, 0, nullptr, &waiting, nullptr) && waiting > 0) {
    char bytes[4096];
    DWORD count = 0;
    if (!ReadFile(native_->written, bytes, sizeof bytes, &count, nullptr) || count == 0) break;
    text.append(bytes, count);
  }
  return text;
}

}  // namespace kelvane
