// The part of the log's window that takes in logs of other programs.

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/unchanging_file.h"
#include "companions/data_log.h"
#include "station_log/log_line.h"

namespace kelvane {

void DataLog::Import_Click() {
  if (adding_ || busy()) return;
  if (const auto path = services_.files.openFile("*", "*")) importFile(pathFromText(*path));
}

void DataLog::importFile(const std::filesystem::path& file) {
  if (adding_ || busy()) return;
  PadGrd_.commit();
  import_.reset();
  start("Reading " + pathText(file.filename()) + " ...", [this, file]() -> std::function<void()> {
    FileSteps disk;
    FileReading now = readUnchanging(file, kLargestForeignLog, disk);
    if (now.how != FileReading::Whole) {
      const std::string why = now.reason.empty() ? "There is no such file." : now.reason;
      return [this, why] { view_.Notice = "Not imported: " + why; };
    }
    const auto bytes = std::make_shared<const std::string>(std::move(now.content));
    return understood(bytes, LogTimes::Utc);
  });
}

/// On a thread of its own; the table stays as it is meanwhile.
std::function<void()> DataLog::understood(const std::shared_ptr<const std::string>& bytes,
                                          LogTimes times) {
  const auto import =
      std::make_shared<LogImport>(bytes, readForeignLog(*bytes, services_.calendar, times), log_);
  return [this, import] { import_ = import; };
}

void DataLog::importTimes(LogTimes times) {
  if (!import_ || busy() || import_->reading().times == times) return;
  start("Reading ...",
        [this, bytes = import_->bytes(), times] { return understood(bytes, times); });
}

void DataLog::takeIn() {
  if (!import_ || !import_->ready() || busy()) return;
  const std::vector<LogRecord> records = import_->records();
  const GridRow first = log_.records();
  std::vector<LogChange> changes;
  for (const LogRecord& record : records) {
    LogRecord bytes;
    std::ranges::transform(record, bytes.begin(),
                           [this](const std::string& text) { return log_.encoded(text); });
    const GridRow row = log_.append(bytes);
    changes.push_back({LogChange::Added, log_.lineText(log_.recordAt(row))});
  }
  note(changes);
  undo_.add([this, first, changes = std::move(changes)]() mutable {
    log_.removeFrom(first);
    for (LogChange& change : changes) change.what = LogChange::Removed;
    note(changes);
  });
  PadGrd_.refresh();
  PadGrd_.select({log_.size() - static_cast<GridRow>(records.size()), LogComments});
  import_.reset();
  view_.Notice = std::to_string(records.size()) +
                 (records.size() == 1 ? " report was" : " reports were") +
                 " taken in. Ctrl+Z takes it all back.";
  refresh();
}

void DataLog::dropImport() {
  import_.reset();
  refresh();
}

}  // namespace kelvane
