#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/work_beside.h"
#include "companions/log_import.h"
#include "contract/components.h"
#include "grid/grid.h"
#include "grid/undo_stack.h"
#include "receiver/receiver_set.h"
#include "station_log/log_export.h"
#include "station_log/log_file.h"
#include "ui/calendar.h"
#include "ui/clipboard.h"
#include "ui/control.h"
#include "ui/file_flows.h"

namespace kelvane {

/// What the log window shows beside its grid, under the controls' names.
struct DataLogView {
  std::string caption = "Station logs";
  std::string captionTip;  ///< what became of lines that are no records; mostly empty
  std::string Notice;      ///< what happened last, in words
  Control Copy, Insert, Delete, Import, Export, OK, Cancel;
  bool open = false;

  bool operator==(const DataLogView&) const = default;
};

class DataLog;

/// A button of the log window: its number, its value, and what a click does.
struct LogButton {
  int id;
  Control DataLogView::*button;
  std::string_view text, tip;
  void (DataLog::*click)();
};
/// From left to right; OK and Cancel stand apart, at the right.
std::span<const LogButton> logButtons();

/// What the log window stands on.
struct DataLogServices {
  ReceiverComponent& receiver;
  Clipboard& clipboard;
  FileFlows& files;
  const Calendar& calendar;
  std::filesystem::path folder;  ///< where the log lies
  /// The stations known on frequencies, for their call signs; none where nobody knows.
  std::function<StationNames(const std::vector<Hz>&)> stationsAt = {};
  /// Asks, from any thread, for deliver() soon.
  std::function<void()> wake = {};
  std::shared_ptr<FileSteps> disk = std::make_shared<FileSteps>();
};

/// The station log's window: the log in a grid, its editing, and its file. Reading and writing the
/// file run beside the window: while they do, the table cannot be changed, and what came of
/// it is taken over by deliver(). A record is shown when it is on the disk. All calls come on the
/// user-interface thread.
class DataLog : private GridTable {
 public:
  explicit DataLog(const DataLogServices& services);
  ~DataLog() override;

  const DataLogView& view() const { return view_; }
  Grid& PadGrd() { return PadGrd_; }
  /// Who shows the window; called when work beside it has changed anything.
  void setListener(std::function<void()> listener) { listener_ = std::move(listener); }

  /// The receiver that the window serves: its settings are recorded, and records are sent to it.
  void Receiver(Index rx);
  /// Receivers came, went or moved. Where its own is gone, the log can be read and edited, but
  /// neither records nor recalls.
  void receiversChanged(const ReceiverMoves& moves);
  /// True opens the log to look at and to edit; false makes each activation add a record.
  void UpdateOnly(bool only) { adding_ = !only; }
  /// A command shows the window. Coming back to it from another window is no activation.
  void activate();

  void Copy_Click();
  void Insert_Click();
  void Delete_Click();
  /// Has the operator choose a file and writes the log there for other programs.
  void Export_Click();
  /// Has the operator choose a log of another program; or takes the one that he dropped. What it
  /// would do is shown first.
  void Import_Click();
  void importFile(const std::filesystem::path& file);
  /// What is looked at; null where nothing is.
  const std::shared_ptr<LogImport>& import() const { return import_; }
  /// What times mean in a table that does not say it.
  void importTimes(LogTimes times);
  /// Takes it into the log, as one step that can be taken back; or drops it.
  void takeIn();
  void dropImport();
  /// Saves the file and closes the window, as closing it by its corner does; where the file cannot
  /// be saved the window stays and says why.
  void OK_Click();
  /// Drops all edits and closes the window.
  void Cancel_Click();

  /// The file is being read or written.
  bool busy() const { return working_; }
  void deliver();

  /// The program ends: keeps the edits, in another file where the log cannot take them. Answers
  /// what the operator has to be told; mostly nothing.
  Result<> end();
  /// Writes the log as it is shown into another file. Answers in words why it could not.
  Result<> saveTo(const std::string& file) const;

 private:
  GridRow rows() const override { return log_.size(); }
  std::string cell(GridRow row, int column) const override;
  void store(GridCell cell, const std::string& text) override;
  bool accepts(int column, char32_t character) const override;
  char32_t inPlaceOf(int column, char32_t character) const override;
  std::string corrected(GridCell cell, const std::string& text) const override;
  std::vector<std::string> choices(int column) const override;
  bool mayHold(GridRow row, std::string_view upperText) const override;
  bool keyDown(int keyCode, int shift) override;
  void recall(GridRow row) override;
  void headerClicked(int column) override;
  bool undo() override;

  void start(const std::string& words, WorkBeside::Job work);
  void workFailed(const std::string& why);
  void read();
  void arrived(LogTable fromFile);
  void readEnded();
  void save();
  void saved(const LogSaved& how);
  void note(const std::vector<LogChange>& changes);
  void sayKept(const Result<>& kept);
  Result<> keepWaiting(std::span<const LogRecord> records);
  void insertWaiting(std::size_t count, const Result<>& kept);
  void serveActivation();
  void close();
  std::string rescue(const std::string& reason) const;

  std::function<void()> understood(const std::shared_ptr<const std::string>& bytes, LogTimes times);
  LogRecord present() const;
  void record();
  void insert(const LogRecord& record);
  LogTable::Removed take(GridRow row);
  void put(const LogTable::Removed& removed);
  void change(GridRow record, int field, std::string_view bytes);
  void selectPresent();
  GridRow rowOf(GridRow record) const;
  void exportTo(const std::string& path, const std::shared_ptr<ReplacedFile>& replaced,
                const StationNames& stations);
  void tellNews();
  void refresh();
  std::string rejectWords() const;

  DataLogServices services_;
  LogFile file_;
  LogTable log_;
  DataLogView view_;
  Grid PadGrd_;
  UndoStack undo_;
  std::vector<std::string> modes_, agcs_;
  Index nReceiver_ = 0;
  bool adding_ = false;
  bool read_ = false;             ///< the table is that of the file
  bool edited_ = false;           ///< the table has what the file lacks, if only another order
  LogChanges changes_;            ///< the records by which they differ
  std::optional<Result<>> kept_;  ///< how the last of them came to the disk, not told yet
  bool saveWhenRead_ = false;
  std::string notice_;              ///< for the notice, once the window is open and at rest
  bool select_ = false;             ///< the record of the present frequency is to be selected
  std::vector<LogRecord> waiting_;  ///< records to be added as soon as the table can be changed
  std::shared_ptr<LogImport> import_;
  std::function<void()> listener_;
  bool working_ = false;  ///< and the table is not to be changed
  WorkBeside work_;
};

}  // namespace kelvane
