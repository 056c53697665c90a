#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "tests/wine/running_panel.h"

namespace kelvane::wine {

/// The server of digits in a process of its own, told what to do through its input.
class DigitServer {
 public:
  explicit DigitServer(const std::wstring& name) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE input = nullptr;
    CreatePipe(&input, &lines_, &inherited, 0);
    SetHandleInformation(lines_, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input;
    std::wstring command =
        L"\"" + (programFolder() / "DigitServer.exe").wstring() + L"\" \"" + name + L"\"";
    running_ = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                              nullptr, nullptr, &startup, &process_);
    CloseHandle(input);
    // The protocol loses a key that is not fetched before the next one.
    say("gap 300");
  }
  ~DigitServer() {
    kill();
    if (lines_) CloseHandle(lines_);
  }
  DigitServer(const DigitServer&) = delete;
  DigitServer& operator=(const DigitServer&) = delete;

  bool running() const { return running_; }
  void say(const std::string& line) {
    DWORD written = 0;
    WriteFile(lines_, (line + "\n").data(), static_cast<DWORD>(line.size() + 1), &written, nullptr);
  }
  /// Ends it in order: it takes its leave of everybody. Answers whether it did.
  bool end() {
    CloseHandle(std::exchange(lines_, nullptr));
    const bool ended = WaitForSingleObject(process_.hProcess, 5000) == WAIT_OBJECT_0;
    kill();
    return ended;
  }
  void kill() {
    if (!std::exchange(running_, FALSE)) return;
    TerminateProcess(process_.hProcess, 1);
    WaitForSingleObject(process_.hProcess, 5000);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

 private:
  HANDLE lines_ = nullptr;
  PROCESS_INFORMATION process_{};
  BOOL running_ = FALSE;
};

}  // namespace kelvane::wine
