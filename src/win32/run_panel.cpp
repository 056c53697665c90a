#include "win32/run_panel.h"

#include "base/instance_name.h"
#include "base/win32/known_folders.h"
#include "diagnostics/report.h"
#include "panel/noted_events.h"
#include "panel/start_up.h"
#include "settings/title.h"
#include "win32/clipboard.h"
#include "win32/component_source.h"
#include "win32/crash_reporter.h"
#include "win32/dde_servers.h"
#include "win32/file_dialogs.h"
#include "win32/message_boxes.h"
#include "win32/system_calendar.h"
#include "win32/system_dialogs.h"
#include "win32/system_facts.h"

namespace kelvane::win32 {

namespace {

/// Whether the computer may fall asleep by itself; what was asked last counts.
void keepAwake(bool keep) {
  SetThreadExecutionState(ES_CONTINUOUS | (keep ? ES_SYSTEM_REQUIRED : 0));
}

}  // namespace

int runPanel(HINSTANCE instance, const std::string& name, SettingsStore& settings,
             MessageBoxes& boxes, SolePanel& sole) {
  LinkHistory history;
  const std::filesystem::path folder = userDataFolder() / pathFromText(safeFileName(name));
  const CrashReporter reporter(folder / "crash", programTitle() + "\r\n" + systemVersion(),
                               history);
  PanelWindow window(instance);
  ComComponents components;
  StartUp startUp(components, boxes);
  if (!startUp.openComponents(name, window.handle())) return 1;
  SystemDialogs dialogs(window.window(), window.colours());
  SystemClipboard clipboard(window.window());
  DdeServers digits;
  SystemFileDialogs fileDialogs(window.window());
  SystemMessageBoxes fileBoxes(window.window());
  FileFlows files(fileDialogs, fileBoxes);
  const SystemCalendar calendar;
  const DiagnosticReport report(startUp.receiver(), settings, history, folder,
                                &startUp.frequency());
  std::error_code gone;
  MAin panel({startUp.receiver(), startUp.frequency(), settings, window, dialogs, clipboard, digits,
              [] { return std::chrono::steady_clock::now(); }, name, files, calendar,
              std::filesystem::current_path(gone), fileBoxes, folder,
              [&report] { return report.save(systemFacts(), wallTime()); },
              std::make_shared<FileSteps>(), wallTime, keepAwake,
              [&window] { window.wakeWork(); }});
  NotedEvents noted(history, panel.receiverEvents(), wallTime, [&window] { window.changed(); });
  ShownEvents shown(panel.frequencyEvents(), window);
  const auto receiverEvents = components.listen(noted);
  const auto frequencyEvents = components.listen(shown);
  window.present(panel);
  sole.shownBy(window.window());
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  const std::string untold = LastWrites::takeNote(settings);
  if (!untold.empty()) fileBoxes.show(untold, {}, Buttons::Ok);
  const int code = window.run();
  dialogs.end();
  return code;
}

}  // namespace kelvane::win32
