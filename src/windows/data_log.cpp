#include "windows/data_log.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <utility>

#include "base/code_page.h"
#include "base/number.h"
#include "base/text.h"
#include "base/time.h"
#include "log/log_line.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

/// Work that takes no longer is over when the call that started it returns.
constexpr milliseconds kGrace{250};

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

DataLogView firstLogView() {
  DataLogView view;
  view.Copy.text = "&Copy";
  view.Copy.tip = "Copy record into clipboard";
  view.Insert.text = "&Insert";
  view.Insert.tip = "Insert a new record";
  view.Delete.text = "&Delete";
  view.Delete.tip = "Delete selected record";
  view.Export.text = "&Export";
  view.Export.tip = "Export the log for other programs, as ADIF or CSV";
  view.OK.text = "OK";
  view.Cancel.text = "&Cancel";
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

}  // namespace

DataLog::DataLog(const DataLogServices& services)
    : services_(services),
      file_(services.folder / "scratchpad.txt"),
      view_(firstLogView()),
      PadGrd_(*this, columns()) {}

DataLog::~DataLog() = default;

void DataLog::Receiver(Index rx) {
  nReceiver_ = rx;
  modes_ = modeNames(services_.receiver, rx);
  agcs_ = agcNames(services_.receiver, rx);
}

void DataLog::activate() {
  if (!view_.open) view_.Notice.clear();
  view_.open = true;
  adding_ ? record() : void(select_ = true);
  if (busy()) return refresh();
  PadGrd_.commit();
  // What is not edited shows the file as it is now; one that could not be read may be by now.
  const bool stale = !read_ || !file_.problem().empty() || (!edited_ && file_.changedElsewhere());
  if (stale) return read();
  serveActivation();
  refresh();
}

void DataLog::serveActivation() {
  for (const LogRecord& record : std::exchange(waiting_, {})) insert(record);
  if (std::exchange(select_, false)) selectPresent();
}

void DataLog::record() {
  const LogRecord record = present();
  if (isPositive(record[LogFrequency]))
    waiting_.push_back(record);
  else
    view_.Notice = "Nothing was recorded: the receiver tells no frequency.";
}

LogRecord DataLog::present() const {
  ReceiverComponent& component = services_.receiver;
  const DateTime now = services_.calendar.now();
  // A record without a filter would not be read again.
  const Setting filter = std::max<Setting>(component.GetRxFilter(nReceiver_), 1);
  return {std::to_string(component.GetRxFrequency(nReceiver_, kTuned).value()),
          component.GetRxModeName(nReceiver_, component.GetRxMode(nReceiver_)),
          std::to_string(filter),
          component.GetRxAgcName(nReceiver_, component.GetRxAgc(nReceiver_)),
          dateText(now),
          timeText(now),
          "Unknown",
          "",
          component.GetRxName(nReceiver_)};
}

void DataLog::insert(const LogRecord& record) {
  LogRecord bytes;
  std::transform(record.begin(), record.end(), bytes.begin(), toCodePage);
  const GridRow row = log_.append(bytes);
  edited_ = true;
  undo_.add([this, added = log_.recordAt(row)] { log_.remove(rowOf(added)); });
  // A comment can be typed at once.
  PadGrd_.select({row, LogComments});
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
  refresh();
}

void DataLog::Delete_Click() {
  if (adding_ || busy() || log_.size() == 0) return;
  PadGrd_.cancel();
  const LogTable::Removed removed = log_.remove(PadGrd_.current().row);
  undo_.add([this, removed] {
    log_.restore(removed);
    PadGrd_.select({removed.row, PadGrd_.current().column});
  });
  edited_ = true;
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

LogExport DataLog::exported(const std::string& path) const {
  const bool csv = upper(pathText(pathFromText(path).extension())) == ".CSV";
  return csv ? csvOf(log_, services_.calendar) : adifOf(log_, services_.calendar);
}

void DataLog::Export_Click() {
  if (busy()) return;
  PadGrd_.commit();
  std::string path = "scratchpad";
  if (!services_.files.saveFile(path, "adi", {"csv"})) return;
  start("Exporting ...", [this, path]() -> std::function<void()> {
    const LogExport file = exported(path);
    const FileResult written = writeFileSafely(pathFromText(path), file.content);
    std::string words = written ? "Exported to " + path + "." : "Not exported: " + written.reason;
    if (written && file.undated > 0)
      words +=
          " Without UTC, since their dates have another form: " + std::to_string(file.undated) +
          " records.";
    return [this, words] { view_.Notice = words; };
  });
}

void DataLog::OK_Click() {
  if (busy()) return;
  PadGrd_.commit();
  const bool unread = !file_.problem().empty();
  if (edited_ && unread) {
    saveWhenRead_ = true;
    return read();
  }
  if (!edited_ && (unread || file_.changedElsewhere())) return close();
  save(warned_ ? LogFile::Overwrite::Whatever : LogFile::Overwrite::Unchanged);
}

void DataLog::Cancel_Click() {
  if (busy()) return;
  PadGrd_.cancel();
  undo_.clear();
  log_ = {};
  read_ = edited_ = warned_ = false;
  close();
}

void DataLog::close() {
  view_.open = false;
  refresh();
}

// Reading and writing.

void DataLog::start(const std::string& words, Work work) {
  PadGrd_.lock(true);
  view_.Notice = words;
  work_ = std::async(std::launch::async, std::move(work));
  refresh();
  if (work_.wait_for(kGrace) == std::future_status::ready) tick();
}

void DataLog::tick() {
  if (!busy() || work_.wait_for(milliseconds(0)) != std::future_status::ready) return;
  PadGrd_.lock(false);
  view_.Notice.clear();
  try {
    work_.get()();
    if (!busy() && read_) serveActivation();
  } catch (const std::exception& failure) {
    view_.Notice = std::string("It did not succeed: ") + failure.what();
  }
  refresh();
}

void DataLog::read() {
  start("Reading ...", [this]() -> std::function<void()> {
    const auto log = std::make_shared<LogTable>(file_.read());
    return [this, log] { arrived(std::move(*log)); };
  });
}

void DataLog::arrived(LogTable fromFile) {
  // Edits are there only where the file could not be read before: all of them are additions.
  for (GridRow row = 0; row < log_.size() && edited_; ++row) {
    LogRecord record;
    for (int field = 0; field < kLogFields; ++field)
      record[static_cast<std::size_t>(field)] = log_.field(log_.recordAt(row), field);
    fromFile.append(record);
  }
  undo_.clear();
  log_ = std::move(fromFile);
  PadGrd_.markSorted(-1);
  read_ = true;
  warned_ = false;
  view_.Notice = rejectWords();
  if (!std::exchange(saveWhenRead_, false)) return;
  if (file_.problem().empty()) return save(LogFile::Overwrite::Unchanged);
  view_.Notice = "Not saved: " + file_.problem();
}

void DataLog::save(LogFile::Overwrite overwrite) {
  start("Saving ...", [this, overwrite]() -> std::function<void()> {
    const LogSaved how = file_.save(log_.content(), overwrite);
    return [this, how] { saved(how); };
  });
}

void DataLog::saved(const LogSaved& how) {
  warned_ = how.how == LogSaved::ChangedElsewhere;
  if (how.how == LogSaved::Done) {
    edited_ = false;
    // A record that was stored meanwhile keeps the window.
    if (waiting_.empty() && !select_) close();
    return;
  }
  view_.Notice = "Not saved: " + how.reason + ".";
  if (warned_)
    view_.Notice += " OK again replaces it and keeps it as a backup; Cancel drops your edits.";
}

std::string DataLog::end() {
  PadGrd_.commit();
  while (busy()) {
    work_.wait();
    tick();
  }
  if (!edited_) return {};
  const LogSaved how = file_.save(log_.content(), LogFile::Overwrite::Unchanged);
  return how.how == LogSaved::Done ? std::string() : rescue(how.reason);
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
  return fromCodePage(log_.field(log_.recordAt(row), column));
}

void DataLog::store(GridCell cell, const std::string& text) {
  const GridRow record = log_.recordAt(cell.row);
  undo_.add(
      [this, record, column = cell.column, before = std::string(log_.field(record, cell.column))] {
        log_.set(record, column, before);
        PadGrd_.select({rowOf(record), column});
      });
  log_.set(record, cell.column, toCodePage(text));
  edited_ = true;
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
  return fromCodePage(logText(toCodePage(text)));
}

std::vector<std::string> DataLog::choices(int column) const {
  if (column == LogMode) return modes_;
  if (column == LogAgc) return agcs_;
  return {kTypes.begin(), kTypes.end()};
}

bool DataLog::mayHold(GridRow row, std::string_view upperText) const {
  const auto isAscii = [](char c) { return (c & 0x80) == 0; };
  // Other letters stand for themselves in the code page alone.
  if (!std::ranges::all_of(upperText, isAscii)) return true;
  const auto equal = [](char c, char wanted) {
    return (c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) == wanted;
  };
  return !std::ranges::search(log_.line(log_.recordAt(row)), upperText, equal).empty();
}

bool DataLog::keyDown(int keyCode, int shift) {
  if (keyCode == key::Delete && shift == 0) return Delete_Click(), true;
  if (keyCode == key::Insert && shift == 0) return Insert_Click(), true;
  if (keyCode == 'C' && shift == key::CtrlHeld) return Copy_Click(), true;
  return false;
}

void DataLog::recall(GridRow row) {
  ReceiverComponent& component = services_.receiver;
  component.SetRxFrequency(nReceiver_, false, nearestLong(num(cell(row, LogFrequency))));
  const Setting mode = component.GetRxModeValue(nReceiver_, cell(row, LogMode));
  if (mode >= 0) component.SetRxMode(nReceiver_, mode);
  component.SetRxFilter(nReceiver_, nearestLong(num(cell(row, LogFilter))));
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
  view_.Copy.enabled = some;
  view_.Export.enabled = view_.OK.enabled = view_.Cancel.enabled = idle;
  view_.caption = "Frequency logs [" + std::to_string(log_.size()) + " records]";
  // The file is another thread's while it is worked on.
  if (!idle) return;
  if (!file_.problem().empty()) view_.caption += " - " + file_.problem();
  view_.captionTip = rejectWords();
}

}  // namespace kelvane
