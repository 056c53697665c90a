#include "components/ambrel/win32/file_picker.h"

#include <objbase.h>

#include <utility>
#include <vector>

#include "base/win32/common_dialogs.h"

namespace kelvane::ambrel {

namespace {

/// Longest path that Windows takes.
constexpr DWORD kLongest = 32768;

BOOL CALLBACK closeWindow(HWND window, LPARAM) {
  PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

std::filesystem::path chosenFile(const FilePicker::Request& request) {
  std::vector<wchar_t> name(kLongest, L'\0');
  OPENFILENAMEW ask{};
  ask.lStructSize = sizeof ask;
  ask.hwndOwner = request.owner;
  ask.lpstrFilter = request.filter.c_str();
  ask.lpstrFile = name.data();
  ask.nMaxFile = kLongest;
  ask.lpstrTitle = request.title.c_str();
  ask.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
  return common_dialogs::openFileName(&ask) ? std::filesystem::path(name.data())
                                            : std::filesystem::path();
}

}  // namespace

FilePicker::~FilePicker() { end(); }

void FilePicker::end() {
  // The dialog tells its owner on this thread that it goes: that has to be let in meanwhile. Its
  // window may not be there yet; it is asked until it has gone.
  while (open_) {
    EnumThreadWindows(threadId_, closeWindow, 0);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
  if (thread_.joinable()) thread_.join();
}

bool FilePicker::ask(Request request, Chosen chosen) {
  if (open_) return false;
  end();
  open_ = true;
  thread_ = std::thread([this, request = std::move(request), chosen = std::move(chosen)] {
    threadId_ = GetCurrentThreadId();
    const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const std::filesystem::path file = chosenFile(request);
    if (!file.empty()) chosen(file);
    if (SUCCEEDED(com)) CoUninitialize();
    open_ = false;
  });
  return true;
}

}  // namespace kelvane::ambrel
