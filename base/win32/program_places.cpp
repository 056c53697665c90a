#include "base/program_places.h"

#include <windows.h>

namespace kelvane {

namespace {

constexpr wchar_t kUserKey[] = L"SOFTWARE\\Morvath Software";
constexpr wchar_t kRigctldValue[] = L"Rigctld";

std::wstring environmentText(const wchar_t* name) {
  std::wstring text(32768, L'\0');
  text.resize(GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
  return text;
}

}  // namespace

ProgramPlaces programPlaces() {
  ProgramPlaces places;
  std::wstring own(32768, L'\0');
  own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
  places.own = std::filesystem::path(own).parent_path();
  for (const wchar_t* name : {L"ProgramFiles", L"ProgramFiles(x86)", L"ProgramW6432"}) {
    if (const auto folder = environmentText(name); !folder.empty())
      places.folders.emplace_back(folder);
  }
  if (const auto local = environmentText(L"LOCALAPPDATA"); !local.empty())
    places.folders.push_back(std::filesystem::path(local) / L"Programs");
  if (const auto drive = environmentText(L"SystemDrive"); !drive.empty())
    places.folders.emplace_back(drive + L"\\");
  const std::wstring path = environmentText(L"PATH");
  for (std::size_t from = 0; from < path.size();) {
    const std::size_t end = std::min(path.find(L';', from), path.size());
    if (end > from) places.search.emplace_back(path.substr(from, end - from));
    from = end + 1;
  }
  return places;
}

std::filesystem::path shownRigctld() {
  wchar_t text[32768] = L"";
  DWORD size = sizeof text;
  const LSTATUS read =
      RegGetValueW(HKEY_CURRENT_USER, kUserKey, kRigctldValue, RRF_RT_REG_SZ, nullptr, text, &size);
  return read == ERROR_SUCCESS ? std::filesystem::path(text) : std::filesystem::path();
}

void keepShownRigctld(const std::filesystem::path& program) {
  const std::wstring text = program.wstring();
  RegSetKeyValueW(HKEY_CURRENT_USER, kUserKey, kRigctldValue, REG_SZ, text.c_str(),
                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace kelvane
