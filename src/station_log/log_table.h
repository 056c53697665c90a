#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grid/grid_sort.h"
#include "station_log/log_changes.h"
#include "station_log/log_line.h"
#include "station_log/log_record.h"

namespace kelvane {

/// The lines of a log file that are not, or not whole, in the table, each with a line end.
struct LogRejects {
  std::string lines;
  std::size_t count = 0;
};

/// How a log's file stands for letters beyond ASCII. Programs before this one wrote the code page;
/// editors make UTF-8 of it, with or without a mark at the start.
enum class LogEncoding { CodePage, Utf8, MarkedUtf8 };

/// The log in memory: records, numbered from 0 in the order in which they came, and the order in
/// which they are shown. Texts are bytes as in the file, which keeps its encoding. Made for a
/// million records: those of the file stay in the text that was read, and only changed and added
/// ones have a text of their own.
class LogTable {
 public:
  /// A record that was taken out, and where it was.
  struct Removed {
    GridRow record;
    GridRow row;
    std::string_view line;  ///< valid as long as the table
  };

  LogTable() = default;
  /// Takes the records of a file over.
  LogTable(std::string file, LogRejects& rejects);

  GridRow size() const { return static_cast<GridRow>(order_.size()); }
  /// How many records there are, whatever is shown: they are numbered below it.
  GridRow records() const { return static_cast<GridRow>(records_.size()); }
  /// The record that is shown in a row.
  GridRow recordAt(GridRow row) const { return order_[row]; }
  std::string_view line(GridRow record) const { return records_[record]; }
  std::string_view field(GridRow record, int field) const;
  /// The same as UTF-8.
  std::string text(GridRow record, int field) const { return decoded(this->field(record, field)); }
  /// The record as the file has it, without line end, but as UTF-8.
  std::string lineText(GridRow record) const;
  /// UTF-8 as this log's bytes, and the way back.
  std::string encoded(std::string_view utf8) const;
  std::string decoded(std::string_view bytes) const;

  /// The text is changed as far as needed for a field to hold it.
  void set(GridRow record, int field, std::string_view text);
  /// Adds a record behind the last row; answers that row.
  GridRow append(const LogRecord& record);
  /// Takes a row's record out; later records move up by one number.
  Removed remove(GridRow row);
  /// Puts a record back under its number, in its row or the last one.
  void restore(const Removed& removed);
  /// Takes all records from that number on out; the others stay in their rows' order.
  void removeFrom(GridRow record);
  /// Does what was done elsewhere: takes as many records out as left there, and adds those that
  /// came behind the last row.
  void apply(const LogChanges& changes);
  /// The order of the rows when they are sorted by a column, ascending.
  std::vector<GridRow> sorted(int field) const;
  /// Shows the same records in this order.
  void setOrder(std::vector<GridRow> order) { order_ = std::move(order); }

  /// The file's content, in the order of the rows.
  std::string content() const;

 private:
  void take(const LogLines& line, LogRejects& rejects);
  std::string_view keep(std::string line);

  std::unique_ptr<const std::string> file_;  ///< what the records' lines lie in
  std::unique_ptr<std::deque<std::string>> own_ = std::make_unique<std::deque<std::string>>();
  std::vector<std::string_view> records_;
  std::vector<GridRow> order_;
  LogEncoding encoding_ = LogEncoding::CodePage;
  bool wellFormed_ = true;  ///< every record's line is as the file is to have it
};

}  // namespace kelvane
