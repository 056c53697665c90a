#include "gui/win32/dialog_thread.h"

#include <utility>

namespace kelvane {

namespace {

BOOL CALLBACK askToClose(HWND window, LPARAM) {
  PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

}  // namespace

void DialogThread::start(std::function<void()> show, Failed failed) {
  if (running_) return;
  end();
  running_ = true;
  const bool started = barrier(
      "starting a dialog",
      [&] { thread_ = std::thread([this, show = std::move(show), failed] { run(show, failed); }); },
      failed);
  if (!started) running_ = false;
}

void DialogThread::run(const std::function<void()>& show, const Failed& failed) {
  id_ = GetCurrentThreadId();
  barrier("showing a dialog", show, failed);
  running_ = false;
}

void DialogThread::end() {
  // The window may not be there yet: it is asked until the thread has ended. Without a thread's
  // number the windows of all threads would be asked. Its owner, on this thread, hears that it goes
  // and has to be let in.
  while (running_) {
    if (const DWORD id = id_) EnumThreadWindows(id, askToClose, 0);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
  if (thread_.joinable()) thread_.join();
  id_ = 0;
}

}  // namespace kelvane
