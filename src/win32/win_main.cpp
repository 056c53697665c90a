#include <windows.h>

#include <commctrl.h>
#include <objbase.h>

#include "gui/win32/common_controls.h"
#include "panel/start_up.h"
#include "win32/message_boxes.h"
#include "win32/registry_store.h"
#include "win32/run_panel.h"
#include "win32/sole_panel.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// COM on the user-interface thread, for as long as it lives.
struct ComThread {
  ComThread() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE); }
  ~ComThread() { CoUninitialize(); }
};

}  // namespace

}  // namespace kelvane::win32

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR commandLine, int) {
  using namespace kelvane;
  using namespace kelvane::win32;
  // What Windows itself loads late is looked for in its own folder too, and not beside the program.
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
  SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  common_controls::use(ICC_TAB_CLASSES | ICC_STANDARD_CLASSES);
  const ComThread com;
  const CommandLine line = parseCommandLine(narrow(commandLine));
  RegistryStore settings(line.instance);
  SystemMessageBoxes boxes(nullptr);
  SolePanel sole(line.instance);
  if (handleWithoutPanel(line, settings, boxes, sole)) return 0;
  return runPanel(instance, line.instance, settings, boxes, sole);
}
