#include <windows.h>

#include <objbase.h>
#include <shlobj.h>

#include <fstream>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"

namespace kelvane::wine {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kUninstallKey[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Kelvane";
constexpr DWORD kRefused = 3;

fs::path fromEnvironment(const wchar_t* variable) {
  wchar_t path[MAX_PATH] = L"";
  GetEnvironmentVariableW(variable, path, MAX_PATH);
  return path;
}

fs::path knownFolder(const GUID& which) {
  wchar_t* path = nullptr;
  SHGetKnownFolderPath(which, 0, nullptr, &path);
  const fs::path folder = path ? path : L"";
  CoTaskMemFree(path);
  return folder;
}

/// Runs a program to its end; answers its code, 999 for one that does not end.
DWORD run(const fs::path& program, const std::wstring& words) {
  std::wstring line = L"\"" + program.wstring() + L"\" " + words;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process))
    return 998;
  DWORD code = 999;
  if (WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0)
    GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

/// Where the program says it is installed; empty where it is not.
fs::path installed() {
  wchar_t place[MAX_PATH] = L"";
  DWORD size = sizeof place;
  RegGetValueW(HKEY_CURRENT_USER, kUninstallKey, L"InstallLocation", RRF_RT_REG_SZ, nullptr, place,
               &size);
  return place;
}

struct Shortcut {
  fs::path target, startIn;
};

Shortcut readShortcut(const fs::path& file) {
  wchar_t target[MAX_PATH] = L"", startIn[MAX_PATH] = L"";
  IShellLinkW* link = nullptr;
  IPersistFile* stored = nullptr;
  CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                   reinterpret_cast<void**>(&link));
  link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&stored));
  if (SUCCEEDED(stored->Load(file.c_str(), STGM_READ))) {
    link->GetPath(target, MAX_PATH, nullptr, 0);
    link->GetWorkingDirectory(startIn, MAX_PATH);
  }
  stored->Release();
  link->Release();
  return {target, startIn};
}

/// Registered for the user, whose classes Wine's own look-up leaves out.
bool scriptsFindComponents() {
  const auto isRegistered = [](const std::wstring& program) {
    const std::wstring key = L"Software\\Classes\\" + program + L"\\CLSID";
    return RegGetValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, nullptr,
                        nullptr) == ERROR_SUCCESS;
  };
  return isRegistered(L"Kelvane.Sondrel") && isRegistered(L"Kelvane.Ambrel");
}

/// The packages that the script beside this test has made and named in the environment.
class Package : public testing::Test {
 protected:
  static void SetUpTestSuite() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  static void TearDownTestSuite() { CoUninitialize(); }

  /// The uninstaller goes on in a copy of itself, so that only what it leaves tells its end.
  static bool uninstalled(const fs::path& place) {
    run(place / L"Uninstall.exe", L"/S");
    return eventually([&] { return !fs::exists(place / L"Uninstall.exe") && installed().empty(); },
                      30000);
  }

  const fs::path setup_ = fromEnvironment(L"KELVANE_SETUP");
  const fs::path shortcut_ = knownFolder(FOLDERID_Programs) / L"Kelvane.lnk";
};

TEST_F(Package, TheUnpackedZipRunsFromAnyFolder) {
  const Instance instance(L"TestZip");
  RunningPanel panel(instance.name(), fromEnvironment(L"KELVANE_UNPACKED"));
  ASSERT_TRUE(panel.settledOn(0));
  EXPECT_EQ(panel.tabs(), 4);
  panel.close();
  EXPECT_EQ(panel.ended(), 0);
}

TEST_F(Package, InstallsForTheUserAndUninstallsWithoutTheUsersData) {
  const Instance instance(L"TestInstalled");
  ASSERT_EQ(run(setup_, L"/S"), 0u);
  const fs::path place = installed();
  EXPECT_EQ(place, knownFolder(FOLDERID_LocalAppData) / L"Programs" / L"Kelvane");
  EXPECT_FALSE(scriptsFindComponents()) << "nobody asked for it";
  const Shortcut shortcut = readShortcut(shortcut_);
  EXPECT_EQ(shortcut.target, place / L"Kelvane.exe");
  ASSERT_TRUE(fs::exists(shortcut.startIn)) << shortcut.startIn;

  RunningPanel panel(instance.name(), place, shortcut.startIn);
  ASSERT_TRUE(panel.settledOn(0));
  EXPECT_EQ(run(setup_, L"/S"), kRefused) << "over a running program";
  EXPECT_EQ(run(place / L"Uninstall.exe", L"/S _?=" + place.wstring()), kRefused);
  EXPECT_TRUE(fs::exists(place / L"Sondrel.dll"));
  panel.close();
  ASSERT_EQ(panel.ended(), 0);

  std::ofstream(place / L"mine.txt") << "put here by the user";
  std::ofstream(shortcut.startIn / L"kept.txt") << "a log";
  ASSERT_TRUE(uninstalled(place));
  EXPECT_FALSE(fs::exists(shortcut_));
  EXPECT_FALSE(fs::exists(place / L"Kelvane.exe"));
  EXPECT_FALSE(fs::exists(place / L"data"));
  EXPECT_TRUE(fs::exists(place / L"mine.txt"));
  EXPECT_TRUE(fs::exists(instance.folder() / L"receivers.txt"));
  EXPECT_TRUE(fs::exists(shortcut.startIn / L"kept.txt"));
  EXPECT_TRUE(instance.hasSettings());
  fs::remove_all(place);
  fs::remove(shortcut.startIn / L"kept.txt");
}

TEST_F(Package, RegistersTheComponentsForScriptsWhereAskedToAndTakesItBack) {
  ASSERT_EQ(run(setup_, L"/S /scripting"), 0u);
  EXPECT_TRUE(scriptsFindComponents());
  const fs::path place = installed();
  ASSERT_TRUE(uninstalled(place));
  EXPECT_FALSE(scriptsFindComponents());
  EXPECT_TRUE(eventually([&] { return !fs::exists(place); }));
}

}  // namespace
}  // namespace kelvane::wine
