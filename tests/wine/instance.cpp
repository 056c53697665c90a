#include "tests/wine/instance.h"

#include <windows.h>

#include <fstream>

#include "tests/wine/running_panel.h"

namespace kelvane::wine {

namespace {

std::filesystem::path environmentFolder(const wchar_t* variable) {
  wchar_t folder[MAX_PATH] = L"";
  GetEnvironmentVariableW(variable, folder, MAX_PATH);
  return folder;
}

}  // namespace

Instance::Instance(const std::wstring& name) : name_(name) { erase(); }

Instance::~Instance() { erase(); }

void Instance::erase() const {
  RegDeleteKeyW(HKEY_CURRENT_USER, key().c_str());
  std::error_code ignored;
  std::filesystem::remove_all(folder(), ignored);
}

std::wstring Instance::key() const { return L"SOFTWARE\\Morvath Software\\" + name_; }

std::filesystem::path Instance::folder() const {
  return environmentFolder(L"LOCALAPPDATA") / L"Kelvane" / name_;
}

void Instance::writeReceivers(const std::string& text) const {
  std::filesystem::create_directories(folder());
  std::ofstream(folder() / L"receivers.txt", std::ios::binary) << text;
}

bool Instance::hasSettings() const {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, this->key().c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
    return false;
  RegCloseKey(key);
  return true;
}

std::optional<std::int32_t> Instance::number(const wchar_t* setting) const {
  std::int32_t value = 0;
  DWORD size = sizeof value;
  if (RegGetValueW(HKEY_CURRENT_USER, key().c_str(), setting, RRF_RT_REG_DWORD, nullptr, &value,
                   &size) != ERROR_SUCCESS)
    return std::nullopt;
  return value;
}

void Instance::write(const wchar_t* setting, std::uint32_t kind, const void* data,
                     std::uint32_t size) const {
  RegSetKeyValueW(HKEY_CURRENT_USER, key().c_str(), setting, kind, data, size);
}

void Instance::write(const wchar_t* setting, std::int32_t value) const {
  write(setting, REG_DWORD, &value, sizeof value);
}

ProgramCopy::ProgramCopy()
    : folder_(environmentFolder(L"TEMP") / (L"kelvane-" + std::to_wstring(GetCurrentProcessId()))) {
  std::filesystem::create_directories(folder_);
  for (const wchar_t* file : {L"Kelvane.exe", L"Sondrel.dll", L"Ambrel.dll"})
    std::filesystem::copy_file(programFolder() / file, folder_ / file,
                               std::filesystem::copy_options::overwrite_existing);
}

ProgramCopy::~ProgramCopy() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

}  // namespace kelvane::wine
