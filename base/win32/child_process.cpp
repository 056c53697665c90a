#include "base/child_process.h"

#include <windows.h>

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

/// A job whose processes end with its last handle, and so with this process however it ends.
HANDLE makeJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
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
  std::wstring words = wide(line);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION child{};
  // It joins the job before it has run at all, and could have started others.
  const DWORD flags = CREATE_NO_WINDOW | CREATE_SUSPENDED;
  if (!CreateProcessW(nullptr, words.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr, &how,
                      &child))
    return wordsFor(GetLastError());
  native_->process = child.hProcess;
  native_->job = makeJob();
  AssignProcessToJobObject(native_->job, child.hProcess);
  ResumeThread(child.hThread);
  CloseHandle(child.hThread);
  return {};
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
