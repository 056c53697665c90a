#include "win32/file_dialogs.h"

#include <cderr.h>

#include <algorithm>
#include <vector>

#include "gui/win32/common_dialogs.h"
#include "win32/modal.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr DWORD kFlags = OFN_LONGNAMES | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
/// Longest path that Windows takes.
constexpr std::size_t kLongestPath = 32768;

using Dialog = BOOL (*)(OPENFILENAMEW*);

/// The filters' descriptions and patterns, and the end of the list.
std::wstring filters(const FileRequest& request) {
  std::wstring list = wide(request.description) + L'\0' + wide(request.pattern) + L'\0';
  for (const std::string& extension : request.others) {
    std::string pattern = "*." + extension;
    std::string description = request.description;
    description.replace(description.find(request.pattern), request.pattern.size(), pattern);
    list += wide(description) + L'\0' + wide(pattern) + L'\0';
  }
  return list + L'\0';
}

std::optional<std::string> ask(Dialog dialog, HWND owner, const FileRequest& request, DWORD flags) {
  const std::wstring title = wide(request.title);
  const std::wstring folder = wide(request.folder);
  const std::wstring extension = wide(request.extension);
  const std::wstring filter = filters(request);
  std::vector<wchar_t> name(kLongestPath, L'\0');
  const std::wstring first = wide(request.name);
  std::copy_n(first.begin(), std::min(first.size(), kLongestPath - 1), name.begin());
  OPENFILENAMEW ask{};
  ask.lStructSize = sizeof ask;
  const Modal modal(owner);
  ask.hwndOwner = modal.owner();
  ask.lpstrFilter = filter.c_str();
  ask.lpstrFile = name.data();
  ask.nMaxFile = static_cast<DWORD>(name.size());
  ask.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  ask.lpstrTitle = title.c_str();
  ask.lpstrDefExt = extension.c_str();
  ask.Flags = kFlags | flags;
  if (dialog(&ask)) return narrow(name.data());
  // A first name that no file can have makes the dialog fail at once: it is shown without one.
  if (common_dialogs::lastError() != FNERR_INVALIDFILENAME) return std::nullopt;
  name[0] = L'\0';
  return dialog(&ask) ? std::optional(narrow(name.data())) : std::nullopt;
}

}  // namespace

std::optional<std::string> SystemFileDialogs::open(const FileRequest& request) {
  return ask(common_dialogs::openFileName, owner_, request, OFN_FILEMUSTEXIST);
}

std::optional<std::string> SystemFileDialogs::save(const FileRequest& request) {
  return ask(common_dialogs::saveFileName, owner_, request, 0);
}

}  // namespace kelvane::win32
