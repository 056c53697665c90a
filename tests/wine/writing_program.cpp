// A program that writes an instance's files and settings until it is killed:
// WritingProgram FOLDER WHICH FROM INSTANCE

#include <windows.h>

#include <cstdlib>

#include "base/barrier.h"
#include "base/win32/utf16.h"
#include "tests/fakes/writing_process.h"
#include "win32/registry_store.h"

int wmain(int count, wchar_t** words) {
  using namespace kelvane;
  if (count != 5) return 2;
  const auto tell = [](const std::string& line) {
    DWORD written = 0;
    const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    if (!WriteFile(out, line.data(), static_cast<DWORD>(line.size()), &written, nullptr))
      ExitProcess(3);
  };
  win32::RegistryStore settings(narrow(words[4]));
  barrier("writing", [&] {
    fakes::writeUntilKilled(words[1], _wtoi(words[2]), _wtoi(words[3]), &settings, tell);
  });
  return 4;
}
