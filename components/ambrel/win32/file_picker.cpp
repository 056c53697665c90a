#include "components/ambrel/win32/file_picker.h"

#include <objbase.h>

#include <utility>
#include <vector>

#include "gui/win32/common_dialogs.h"

namespace kelvane::ambrel {

namespace {

/// Longest path that Windows takes.
constexpr DWORD kLongest = 32768;

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

bool FilePicker::ask(Request request, Chosen chosen, Failed failed) {
  if (thread_.running()) return false;
  thread_.start(
      [request = std::move(request), chosen = std::move(chosen)] {
        const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        const std::filesystem::path file = chosenFile(request);
        if (!file.empty()) chosen(file);
        if (SUCCEEDED(com)) CoUninitialize();
      },
      std::move(failed));
  return true;
}

}  // namespace kelvane::ambrel
