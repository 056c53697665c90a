#include "base/child_process.h"

#include <windows.h>

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

struct ChildProcess::Native {
  HANDLE job = nullptr;
  HANDLE process = nullptr;

  void forget() {
    if (process) CloseHandle(process);
    if (job) CloseHandle(job);
    process = job = nullptr;
  }
};

ChildProcess::ChildProcess() : native_(std::make_unique<Native>()) {}

ChildProcess::~ChildProcess() { end(); }

std::string ChildProcess::start(const std::string& line) {
  end();
  const ProgramLine asked = programOf(line);
  if (!asked.problem.empty()) return asked.problem;
  const std::wstring program = fullName(asked.program);
  if (program.empty()) return "There is no program " + asked.program + ".";
  std::wstring words = wide(line);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION child{};
  // It joins the job before it has run at all, and could have started others.
  const DWORD flags = CREATE_NO_WINDOW | CREATE_SUSPENDED;
  if (!CreateProcessW(program.c_str(), words.data(), nullptr, nullptr, FALSE, flags, nullptr,
                      nullptr, &how, &child))
    return wordsFor(GetLastError());
  native_->process = child.hProcess;
  native_->job = makeJob();
  std::string problem;
  if (!native_->job || !AssignProcessToJobObject(native_->job, child.hProcess))
    problem = "It could not be tied to this program: " + wordsFor(GetLastError());
  else
    ResumeThread(child.hThread);
  CloseHandle(child.hThread);
  // It would outlive this program, and hold the radio.
  if (!problem.empty()) end();
  return problem;
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

}  // namespace kelvane
