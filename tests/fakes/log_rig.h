#pragma once

#include <memory>
#include <thread>

#include "companions/data_log.h"
#include "tests/fakes/file_dialogs.h"
#include "tests/fakes/fixed_calendar.h"
#include "tests/fakes/panel_rig.h"

namespace kelvane::fakes {

/// The log window on simulated receivers, with its file in a folder of a test's own.
class LogRig {
 public:
  LogRig() {
    sondrel.open();
    sondrel.run(milliseconds(3000));
    restart();
  }

  /// The program starts anew.
  void restart() {
    log.reset();
    log = std::make_unique<DataLog>(
        DataLogServices{sondrel.core, clipboard, flows, calendar, folder.path()});
    log->Receiver(0);
  }
  /// Lets the log finish with its file.
  void settle() {
    while (log->busy()) {
      log->deliver();
      std::this_thread::yield();
    }
  }
  void look() { open(true); }
  void store() { open(false); }
  void ok() {
    log->OK_Click();
    settle();
  }
  void cancel() {
    log->Cancel_Click();
    settle();
  }
  void sort(int column) {
    log->PadGrd().headerClicked(column);
    settle();
  }
  void tune(Hz frequency) {
    sondrel.core.SetRxFrequency(0, false, frequency);
    sondrel.run(milliseconds(200));
  }

  void write(const std::string& content) { writeFileSafely(path, content); }
  std::string file() const { return readFile(path, 100'000'000).value_or("none"); }
  std::string cell(GridRow row, int column) const {
    return log->PadGrd().table().cell(row, column);
  }
  GridRow records() const { return log->PadGrd().table().rows(); }
  /// A column of the grid, its cells between commas.
  std::string column(int field) const {
    std::string text;
    for (GridRow row = 0; row < records(); ++row) text += (row ? "," : "") + cell(row, field);
    return text;
  }
  /// Types into a cell, as from its start, and ends with Enter.
  void enter(GridCell cell, std::string_view text) {
    Grid& grid = log->PadGrd();
    grid.select(cell);
    if (grid.begin(Grid::Begin::Replace)) grid.edited(text);
    grid.commit();
  }
  void key(int keyCode, int shift = 0) { log->PadGrd().keyDown(keyCode, shift); }

  TempFolder folder;
  std::filesystem::path path = folder.path() / "scratchpad.txt";
  SondrelRig sondrel;
  FakeClipboard clipboard;
  ScriptedDialogs dialogs;
  FileFlows flows{dialogs, dialogs};
  FixedCalendar calendar;
  std::unique_ptr<DataLog> log;

 private:
  void open(bool updateOnly) {
    log->UpdateOnly(updateOnly);
    log->activate();
    settle();
  }
};

}  // namespace kelvane::fakes
