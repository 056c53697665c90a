#include "base/folder.h"

#include <windows.h>

#include <memory>
#include <string_view>

namespace kelvane {

namespace {

struct CloseSearch {
  using pointer = HANDLE;
  void operator()(HANDLE search) const { FindClose(search); }
};

}  // namespace

std::vector<std::filesystem::path> entriesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> entries;
  WIN32_FIND_DATAW entry;
  const HANDLE first = FindFirstFileExW((folder / L"*").c_str(), FindExInfoBasic, &entry,
                                        FindExSearchNameMatch, nullptr, 0);
  if (first == INVALID_HANDLE_VALUE) return entries;
  const std::unique_ptr<HANDLE, CloseSearch> closing(first);
  do {
    const std::wstring_view name = entry.cFileName;
    if (name != L"." && name != L"..") entries.push_back(folder / name);
  } while (FindNextFileW(first, &entry));
  return entries;
}

}  // namespace kelvane
