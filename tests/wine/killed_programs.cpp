#include "tests/wine/killed_programs.h"

#include "base/win32/utf16.h"
#include "tests/wine/running_panel.h"

namespace kelvane::wine {

/// A process that writes, and what it told so far.
struct KilledPrograms::Program {
  PROCESS_INFORMATION process{};
  HANDLE told = nullptr;
  std::string heard;

  Program() = default;
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    for (const HANDLE handle : {process.hProcess, process.hThread, told})
      if (handle) CloseHandle(handle);
  }

  /// Hears the next piece; false where the process has ended.
  bool hear() {
    char piece[4096];
    DWORD count = 0;
    if (!ReadFile(told, piece, sizeof piece, &count, nullptr)) return false;
    heard.append(piece, count);
    return count > 0;
  }
};

KilledPrograms::KilledPrograms(const std::string& instance)
    : instance_(instance), settings_(instance) {
  settings_.erase();
}

KilledPrograms::~KilledPrograms() { settings_.erase(); }

std::unique_ptr<KilledPrograms::Program> KilledPrograms::begin(int which) const {
  auto program = std::make_unique<Program>();
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE writing = nullptr;
  if (!CreatePipe(&program->told, &writing, &inherited, 0)) return nullptr;
  SetHandleInformation(program->told, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdOutput = writing;
  std::wstring line = L"\"" + (programFolder() / L"WritingProgram.exe").wstring() + L"\" " +
                      folder_.path().wstring() + L" " + std::to_wstring(which) + L" " +
                      std::to_wstring(1'000'000 + round_ * 2000) + L" " + wide(instance_);
  const bool started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                      nullptr, &how, &program->process);
  CloseHandle(writing);
  return started ? std::move(program) : nullptr;
}

bool KilledPrograms::kill(DWORD after) {
  const auto first = begin(0), second = begin(1);
  ++round_;
  if (!first || !second || !first->hear() || !second->hear()) return false;
  Sleep(after);
  const bool whole = end(*first);
  Sleep(after / 4);
  return end(*second) && whole;
}

bool KilledPrograms::end(Program& program) {
  constexpr UINT kKilled = 9;
  TerminateProcess(program.process.hProcess, kKilled);
  while (program.hear()) continue;
  WaitForSingleObject(program.process.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(program.process.hProcess, &code);
  files_.note(program.heard);
  return code == kKilled;
}

}  // namespace kelvane::wine
