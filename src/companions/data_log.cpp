#include "companions/data_log.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/barrier.h"
#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"
#include "base/time.h"
#include "receiver/shown_receiver.h"
#include "station_log/log_line.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

constexpr std::array<std::string_view, 5> kTypes{"VOICE", "DRM", "ALE", "FSK", "PSK"};

std::vector<GridColumn> columns() {
  const auto caption = [](int field) { return std::string(kLogCaptions[field]); };
  return {{caption(LogFrequency), 90, true},
          {caption(LogMode), 64, false, true, true, true, "Select Mode from list"},
          {caption(LogFilter), 60, true},
          {caption(LogAgc), 72, false, true, true, true, "Select Agc from list"},
          {caption(LogDate), 84, false, false, false},
          {caption(LogTime), 68, false, false, false},
          {caption(LogType), 78, false, true, true, true, "Select Type from list"},
          {caption(LogComments), 210},
          {caption(LogReceiver), 100}};
}

constexpr auto kLogButtons = std::to_array<LogButton>({
    {id::PadInsert, &DataLogView::Insert, "&Insert", "Insert a new record", &DataLog::Insert_Click},
    {id::PadDelete, &DataLogView::Delete, "&Delete", "Delete selected record",
     &DataLog::Delete_Click},
    {id::PadCopy, &DataLogView::Copy, "&Copy", "Copy record into clipboard", &DataLog::Copy_Click},
    {id::PadImport, &DataLogView::Import, "I&mport",
     "Take in a log of another program: ADIF, or a table with headings", &DataLog::Import_Click},
    {id::PadExport, &DataLogView::Export, "&Export",
     "Export the log for other programs, as ADIF or CSV", &DataLog::Export_Click},
    {id::PadOK, &DataLogView::OK, "OK", "", &DataLog::OK_Click},
    {id::PadCancel, &DataLogView::Cancel, "&Cancel", "", &DataLog::Cancel_Click},
});

DataLogView firstLogView() {
  DataLogView view;
  for (const LogButton& row : kLogButtons) {
    (view.*row.button).text = row.text;
    (view.*row.button).tip = row.tip;
  }
  return view;
}

std::vector<std::string> modeNames(ReceiverComponent& component, Index rx) {
  std::vector<std::string> names;
  for (Setting mode = 0; mode < component.GetRxModeCount(rx); ++mode) {
    if (component.HasRxMode(rx, mode)) names.push_back(component.GetRxModeName(rx, mode));
  }
  return names;
}

std::vector<std::string> agcNames(ReceiverComponent& component, Index rx) {
  std::vector<std::string> names;
  for (Setting agc = 0; agc < component.GetRxAgcCount(rx); ++agc) {
    if (component.HasRxAgc(rx, agc)) names.push_back(component.GetRxAgcName(rx, agc));
  }
  return names;
}

bool isCsv(const std::string& path) {
  return upper(pathText(pathFromText(path).extension())) == ".CSV";
}

}  // namespace

std::span<const LogButton> logButtons() { return kLogButtons; }

DataLog::DataLog(const DataLogServices& services)
    : services_(services),
      file_(services.folder / "scratchpad.txt", services.disk),
      view_(firstLogView()),
      PadGrd_(*this, columns()),
      work_(services.wake) {
  // What a killed program left comes into the file without being asked for.
  if (file_.mayHaveLeftovers()) read();
}

DataLog::~DataLog() = default;

void DataLog::Receiver(Index rx) {
  nReceiver_ = rx;
  modes_ = modeNames(services_.receiver, rx);
  agcs_ = agcNames(services_.receiver, rx);
}

void DataLog::receiversChanged(const ReceiverMoves& moves) {
  const Index now = moves(nReceiver_);
  if (now != -1) return Receiver(now);
  nReceiver_ = -1;
  modes_.clear();
  agcs_.clear();
}

void DataLog::activate() {
  if (!view_.open) view_.Notice.clear();
  view_.open = true;
  adding_ ? record() : void(select_ = true);
  if (busy()) return tellNews();
  PadGrd_.commit();
  // What is not edited shows the file as it is now; one that could not be read may be by now.
  const bool stale = !read_ || !file_.readable() || (!edited_ && file_.changedElsewhere());
  if (stale) return read();
  serveActivation();
  tellNews();
}

void DataLog::tellNews() {
  if (view_.open && !busy() && !notice_.empty()) view_.Notice = std::exchange(notice_, {});
  refresh();
}

void DataLog::serveActivation() {
  if (!waiting_.empty()) {
    start("Storing ...", [this, records = waiting_]() -> std::function<void()> {
      const Result<> kept = keepWaiting(records);
      return [this, count = records.size(), kept] { insertWaiting(count, kept); };
    });
  }
  if (!busy() && std::exchange(select_, false)) selectPresent();
}

/// The records as the table is going to have them, where their letters are in its file's encoding.
Result<> DataLog::keepWaiting(std::span<const LogRecord> records) {
  std::vector<LogChange> changes;
  for (const LogRecord& record : records)
    changes.push_back({LogChange::Added, joinLogLine(record)});
  return file_.keep(changes);
}

void DataLog::insertWaiting(std::size_t count, const Result<>& kept) {
  const std::vector<LogRecord> records(waiting_.begin(), waiting_.begin() + count);
  waiting_.erase(waiting_.begin(), waiting_.begin() + count);
  for (const LogRecord& record : records) insert(record);
  sayKept(kept);
}

void DataLog::sayKept(const Result<>& kept) {
  if (!kept) view_.Notice = "It is in this window only, until OK saves it: " + kept.reason();
}

void DataLog::record() {
  const LogRecord record = present();
  if (isPositive(record[LogFrequency])) return waiting_.push_back(record);
  notice_ = services_.receiver.IsRxOnline(nReceiver_)
                ? "Nothing was recorded: the receiver tells no frequency."
                : "Nothing was recorded: the receiver's link is not up.";
}

LogRecord DataLog::present() const {
  ReceiverComponent& component = services_.receiver;
  const DateTime now = services_.calendar.now();
  const Setting mode = component.GetRxMode(nReceiver_), agc = component.GetRxAgc(nReceiver_);
  const Setting filter = component.GetRxFilter(nReceiver_);
  // What the receiver does not tell is left empty.
  return {std::to_string(component.GetRxFrequency(nReceiver_, kTuned).value()),
          mode < 0 ? "" : component.GetRxModeName(nReceiver_, mode).value(),
          filter <= 0 ? "" : std::to_string(filter),
          agc < 0 ? "" : component.GetRxAgcName(nReceiver_, agc).value(),
          dateText(now),
          timeText(now),
          "Unknown",
          "",
          component.GetRxName(nReceiver_)};
}

void DataLog::insert(const LogRecord& record) {
  LogRecord bytes;
  std::ranges::transform(record, bytes.begin(),
                         [this](const std::string& text) { return log_.encoded(text); });
  const GridRow row = log_.append(bytes);
  const LogChange kept{LogChange::Added, joinLogLine(record)};
  const LogChange shown{LogChange::Added, log_.lineText(log_.recordAt(row))};
  changes_.note(kept);
  edited_ = true;
  // Letters that the file cannot hold came out as others.
  if (shown.line != kept.line) note({{LogChange::Removed, kept.line}, shown});
  undo_.add([this, added = log_.recordAt(row)] { take(rowOf(added)); });
  // A comment can be typed at once.
  PadGrd_.select({row, LogComments});
}

// Every change of a record, so that the disk hears of it.

LogTable::Removed DataLog::take(GridRow row) {
  const std::string line = log_.lineText(log_.recordAt(row));
  const LogTable::Removed removed = log_.remove(row);
  note({{LogChange::Removed, line}});
  return removed;
}

void DataLog::put(const LogTable::Removed& removed) {
  log_.restore(removed);
  note({{LogChange::Added, log_.lineText(removed.record)}});
}

void DataLog::change(GridRow record, int field, std::string_view bytes) {
  const std::string before = log_.lineText(record);
  log_.set(record, field, bytes);
  note({{LogChange::Removed, before}, {LogChange::Added, log_.lineText(record)}});
}

/// The disk comes beside the window: typing does not wait for it.
void DataLog::note(const std::vector<LogChange>& changes) {
  for (const LogChange& change : changes) changes_.note(change);
  edited_ = true;
  work_.start(
      "keeping records",
      [this, changes]() -> WorkBeside::Done {
        return [this, kept = file_.keep(changes)] { kept_ = kept; };
      },
      [this](const std::string& why) { kept_ = Failure{why}; });
}

GridRow DataLog::rowOf(GridRow record) const {
  GridRow row = 0;
  while (log_.recordAt(row) != record) ++row;
  return row;
}

void DataLog::selectPresent() {
  const Hz frequency = services_.receiver.GetRxFrequency(nReceiver_, kTuned);
  for (GridRow row = 0; row < log_.size(); ++row) {
    if (num(log_.field(log_.recordAt(row), LogFrequency)) == frequency)
      return PadGrd_.select({row, PadGrd_.current().column});
  }
}

// The buttons.

void DataLog::Insert_Click() {
  if (adding_ || busy()) return;
  PadGrd_.commit();
  record();
  serveActivation();
  tellNews();
}

void DataLog::Delete_Click() {
  if (adding_ || busy() || log_.size() == 0) return;
  PadGrd_.cancel();
  const LogTable::Removed removed = take(PadGrd_.current().row);
  undo_.add([this, removed] {
    put(removed);
    PadGrd_.select({removed.row, PadGrd_.current().column});
  });
  refresh();
}

void DataLog::Copy_Click() {
  if (log_.size() == 0) return;
  PadGrd_.commit();
  std::string text;
  for (int field = 0; field < kLogFields; ++field)
    text.append(field > 0 ? "\t" : "").append(cell(PadGrd_.current().row, field));
  services_.clipboard.setText(text);
  view_.Notice = "The record is in the clipboard.";
}

void DataLog::Export_Click() {
  if (busy()) return;
  PadGrd_.commit();
  const auto chosen = services_.files.saveFile("scratchpad", "adi", {"csv"});
  if (!chosen) return;
  const auto replaced = services_.files.takeReplaced();
  if (isCsv(*chosen) || !services_.stationsAt) return exportTo(*chosen, replaced, {});
  start("Exporting ...", [this, path = *chosen, replaced]() -> std::function<void()> {
    return [this, path, replaced, frequencies = uncalledFrequencies(log_)] {
      exportTo(path, replaced, services_.stationsAt(frequencies));
    };
  });
}

void DataLog::exportTo(const std::string& path, const std::shared_ptr<ReplacedFile>& replaced,
                       const StationNames& stations) {
  start("Exporting ...", [this, path, replaced, stations]() -> std::function<void()> {
    const LogExport file =
        isCsv(path) ? csvOf(log_, services_.calendar) : adifOf(log_, services_.calendar, stations);
    const Result<> written =
        writeInPlaceOf(replaced, pathFromText(path), file.content, *services_.disk);
    std::string words = written ? "Exported to " + path + "." : "Not exported: " + written.reason();
    const auto without = [&](const char* what, std::size_t records) {
      if (written && records > 0) words += what + std::to_string(records) + " records.";
    };
    without(" Without UTC, since their dates have another form: ", file.undated);
    without(" Without a call sign, since none is known: ", file.uncalled);
    return [this, words] { view_.Notice = words; };
  });
}

void DataLog::OK_Click() {
  if (busy()) return;
  PadGrd_.commit();
  // What was only looked at is no reason to write a file.
  if (!edited_) return close();
  if (file_.readable()) return save();
  saveWhenRead_ = true;
  read();
}

void DataLog::Cancel_Click() {
  if (busy()) return;
  PadGrd_.cancel();
  start("Cancelling ...", [this]() -> std::function<void()> {
    const Result<> dropped = file_.drop();
    return [this, dropped] {
      undo_.clear();
      changes_ = {};
      log_ = {};
      read_ = edited_ = false;
      if (dropped) return close();
      view_.Notice =
          "The edits are dropped, but may come back at the next start: " + dropped.reason();
    };
  });
}

void DataLog::close() {
  import_.reset();
  PadGrd_.dropTyped();
  view_.open = false;
  refresh();
}

// Reading and writing.

/// Jobs come one after the other: a change that is on its way to the disk is there before the file
/// has it.
void DataLog::start(const std::string& words, WorkBeside::Job work) {
  // First, since it may fail: then nothing is under way.
  work_.start(
      "working on the station log",
      [this, work = std::move(work)]() -> WorkBeside::Done {
        return [this, done = work()] {
          working_ = false;
          view_.Notice.clear();
          barrier("showing the station log", done,
                  [this](const std::string& why) { workFailed(why); });
          if (!busy() && read_) serveActivation();
        };
      },
      [this](const std::string& why) { workFailed(why); });
  working_ = true;
  PadGrd_.lock(true);
  view_.Notice = words;
  refresh();
}

void DataLog::workFailed(const std::string& why) {
  working_ = false;
  view_.Notice = "It did not succeed: " + why + ".";
}

void DataLog::deliver() {
  if (!work_.deliver()) return;
  if (!busy()) {
    // Last, since what was typed meanwhile is for the cell that is current now.
    PadGrd_.lock(false);
    if (kept_) sayKept(*std::exchange(kept_, std::nullopt));
  }
  tellNews();
  if (listener_) listener_();
}

void DataLog::read() {
  start("Reading ...", [this, records = waiting_]() -> std::function<void()> {
    const Result<> kept = keepWaiting(records);
    const auto log = std::make_shared<LogTable>(file_.read());
    return [this, log, count = records.size(), kept] {
      arrived(std::move(*log));
      insertWaiting(count, kept);
      readEnded();
    };
  });
}

void DataLog::arrived(LogTable fromFile) {
  // Edits are there only where the file could not be read before.
  fromFile.apply(changes_);
  undo_.clear();
  log_ = std::move(fromFile);
  PadGrd_.markSorted(-1);
  read_ = true;
  view_.Notice = rejectWords();
  if (!file_.leftoverWords().empty()) notice_ = file_.leftoverWords();
}

void DataLog::readEnded() {
  if (!std::exchange(saveWhenRead_, false)) return;
  if (file_.readable()) return save();
  view_.Notice = "Not saved: " + file_.readable().reason();
}

void DataLog::save() {
  start("Saving ...", [this]() -> std::function<void()> {
    const LogSaved how = file_.save(log_, changes_);
    return [this, how] { saved(how); };
  });
}

void DataLog::saved(const LogSaved& how) {
  if (!how) {
    view_.Notice = "Not saved: " + how.reason() + ".";
    return;
  }
  edited_ = false;
  changes_ = {};
  if (*how) {
    undo_.clear();
    log_ = std::move(**how);
    PadGrd_.markSorted(-1);
  }
  // A record that was stored meanwhile keeps the window.
  if (waiting_.empty() && !select_) close();
}

Result<> DataLog::end() {
  PadGrd_.commit();
  for (bool more = true; more;) {
    work_.wait();
    deliver();
    more = busy();
  }
  if (!edited_) return {};
  const LogSaved how = file_.save(log_, changes_);
  if (how) return {};
  // What the disk refused before it may take by now.
  if (!file_.keep({})) return Failure{rescue(how.reason())};
  return Failure{"Error: the station log was not saved: " + how.reason() +
                 ".\n\nIts changes are kept beside it and go into it at the next start."};
}

Result<> DataLog::saveTo(const std::string& file) const {
  const Result<> written = writeFileSafely(pathFromText(file), log_.content());
  if (!written) return Failure{"Error: " + written.reason() + "."};
  return {};
}

std::string DataLog::rescue(const std::string& reason) const {
  const std::string words = "Error: the station log was not saved: " + reason + ".\n\n";
  std::error_code unknown;
  for (const auto& folder : {services_.folder, std::filesystem::temp_directory_path(unknown)}) {
    int number = 1;
    const auto file = [&] {
      return folder / ("scratchpad.unsaved-" + std::to_string(number) + ".txt");
    };
    while (std::filesystem::exists(file(), unknown)) ++number;
    if (writeFileSafely(file(), log_.content())) return words + "It is in " + pathText(file());
  }
  return words + "It could not be kept anywhere else either.";
}

// The grid.

std::string DataLog::cell(GridRow row, int column) const {
  return log_.text(log_.recordAt(row), column);
}

void DataLog::store(GridCell cell, const std::string& text) {
  const GridRow record = log_.recordAt(cell.row);
  undo_.add(
      [this, record, column = cell.column, before = std::string(log_.field(record, cell.column))] {
        change(record, column, before);
        PadGrd_.select({rowOf(record), column});
      });
  change(record, cell.column, log_.encoded(text));
}

bool DataLog::accepts(int column, char32_t character) const {
  if (column == LogFrequency || column == LogFilter) return character >= '0' && character <= '9';
  return column == LogComments || column == LogReceiver;
}

/// What the file would not give back is replaced before the eyes of who types it.
char32_t DataLog::inPlaceOf(int, char32_t character) const {
  if (character == '|') return '/';
  return character < ' ' || character == 0x7F ? U' ' : character;
}

std::string DataLog::corrected(GridCell cell, const std::string& text) const {
  const bool number = cell.column == LogFrequency || cell.column == LogFilter;
  if (number && num(text) == 0) return this->cell(cell.row, cell.column);
  return log_.decoded(logText(log_.encoded(text)));
}

std::vector<std::string> DataLog::choices(int column) const {
  if (column == LogMode) return modes_;
  if (column == LogAgc) return agcs_;
  return {kTypes.begin(), kTypes.end()};
}

bool DataLog::mayHold(GridRow row, std::string_view upperText) const {
  // Other letters are other bytes in the file.
  if (!isAscii(upperText)) return true;
  return holdsUpper(log_.line(log_.recordAt(row)), upperText);
}

bool DataLog::keyDown(int keyCode, int shift) {
  if (keyCode == key::Delete && shift == 0) {
    Delete_Click();
    return true;
  }
  if (keyCode == key::Insert && shift == 0) {
    Insert_Click();
    return true;
  }
  if (keyCode == 'C' && shift == key::CtrlHeld) {
    Copy_Click();
    return true;
  }
  return false;
}

void DataLog::recall(GridRow row) {
  ReceiverComponent& component = services_.receiver;
  if (nReceiver_ < 0 || !takesCommands(component, nReceiver_)) {
    view_.Notice = "The receiver takes no commands now: the record was not sent.";
    return refresh();
  }
  component.SetRxFrequency(nReceiver_, false, nearestLong(num(cell(row, LogFrequency))));
  const Setting mode = component.GetRxModeValue(nReceiver_, cell(row, LogMode));
  if (mode >= 0) component.SetRxMode(nReceiver_, mode);
  const std::string filter = cell(row, LogFilter);
  if (isPositive(filter)) component.SetRxFilter(nReceiver_, nearestLong(num(filter)));
  const Setting agc = component.GetRxAgcValue(nReceiver_, cell(row, LogAgc));
  if (agc >= 0) component.SetRxAgc(nReceiver_, agc);
}

void DataLog::headerClicked(int column) {
  if (adding_ || busy() || log_.size() == 0) return;
  start("Sorting ...", [this, column]() -> std::function<void()> {
    const auto order = std::make_shared<std::vector<GridRow>>(log_.sorted(column));
    return [this, column, order] {
      const GridRow record = log_.recordAt(PadGrd_.current().row);
      log_.setOrder(std::move(*order));
      edited_ = true;
      PadGrd_.markSorted(column);
      PadGrd_.select({rowOf(record), column});
    };
  });
}

bool DataLog::undo() {
  const bool done = !busy() && undo_.takeBack();
  refresh();
  return done;
}

// What is shown.

std::string DataLog::rejectWords() const {
  const std::size_t count = file_.rejected();
  if (count == 0) return {};
  const bool one = count == 1, kept = !file_.rejectFile().empty();
  const std::string lines = std::to_string(count) + (one ? " line" : " lines") + " of the file ";
  if (kept)
    return lines + (one ? "is" : "are") + " kept in " + pathText(file_.rejectFile().filename());
  return lines + (one ? "is no record; saving keeps it in a file of its own"
                      : "are no records; saving keeps them in a file of their own");
}

void DataLog::refresh() {
  PadGrd_.refresh();
  const bool idle = !busy(), some = log_.size() > 0;
  view_.Insert.enabled = idle && !adding_;
  view_.Delete.enabled = idle && !adding_ && some;
  view_.Import.enabled = idle && !adding_;
  view_.Copy.enabled = some;
  view_.Export.enabled = view_.OK.enabled = view_.Cancel.enabled = idle;
  view_.caption = "Frequency logs [" + std::to_string(log_.size()) + " records]";
  // The file is another thread's while it is worked on.
  if (!idle) return;
  if (!file_.readable()) view_.caption += " - " + file_.readable().reason();
  view_.captionTip = rejectWords();
}

}  // namespace kelvane
