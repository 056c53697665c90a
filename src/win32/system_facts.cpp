#include "win32/system_facts.h"

#include <windows.h>

#include <winver.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>

#include "base/safe_file.h"
#include "base/win32/system_library.h"

namespace kelvane::win32 {

namespace {

/// The version in the file's resource; empty where it has none.
std::string fileVersion(const std::filesystem::path& file) {
  constexpr const wchar_t* kLibrary = L"version.dll";
  auto* const sizeOf =
      systemFunction<decltype(GetFileVersionInfoSizeW)>(kLibrary, "GetFileVersionInfoSizeW");
  auto* const read = systemFunction<decltype(GetFileVersionInfoW)>(kLibrary, "GetFileVersionInfoW");
  auto* const query = systemFunction<decltype(VerQueryValueW)>(kLibrary, "VerQueryValueW");
  if (!sizeOf || !read || !query) return {};
  DWORD ignored = 0;
  std::vector<char> data(sizeOf(file.c_str(), &ignored));
  VS_FIXEDFILEINFO* info = nullptr;
  UINT size = 0;
  if (data.empty() || !read(file.c_str(), 0, static_cast<DWORD>(data.size()), data.data()) ||
      !query(data.data(), L"\\", reinterpret_cast<void**>(&info), &size))
    return {};
  std::array<char, 48> text;
  std::snprintf(text.data(), text.size(), "%u.%u.%u", HIWORD(info->dwFileVersionMS),
                LOWORD(info->dwFileVersionMS), HIWORD(info->dwFileVersionLS));
  return text.data();
}

std::filesystem::path programFile() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace

std::string systemVersion() {
  // What the documented function answers depends on what the manifest says.
  using Ask = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto ask = reinterpret_cast<Ask>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (ask) ask(&version);
  std::array<char, 80> text;
  std::snprintf(text.data(), text.size(), "Windows %lu.%lu.%lu, %u-bit program",
                version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber,
                static_cast<unsigned>(sizeof(void*) * 8));
  return text.data();
}

SystemFacts systemFacts() {
  SystemFacts facts{systemVersion(), {}};
  const std::filesystem::path program = programFile();
  for (const wchar_t* name : {L"Kelvane.exe", L"Sondrel.dll", L"Ambrel.dll"}) {
    const std::filesystem::path file = program.parent_path() / name;
    const std::string version = fileVersion(file);
    facts.files.push_back(pathText(file) + (version.empty() ? " (no version)" : " " + version));
  }
  return facts;
}

WallTime wallTime() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace kelvane::win32
