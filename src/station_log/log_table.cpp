#include "station_log/log_table.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <utility>

#include "base/code_page.h"
#include "base/encoding.h"
#include "base/text.h"
#include "station_log/log_line.h"

namespace kelvane {

namespace {

/// The fewest bytes that make a record, with its line end.
constexpr std::size_t kShortest = 11;

/// About how many lines there are, rather too many: counted at the start, since to count all takes
/// a good part of the time that reading takes.
std::size_t linesIn(std::string_view text) {
  constexpr std::size_t kSample = 1 << 20;
  const std::string_view sample = text.substr(0, kSample);
  const auto ends = [sample](char end) { return std::ranges::count(sample, end); };
  const auto counted = static_cast<std::size_t>(std::max(ends('\n'), ends('\r'))) + 1;
  if (text.size() <= kSample) return counted;
  const std::size_t lines = counted * (text.size() / kSample + 1);
  return lines + lines / 16;
}

/// Letters of the code page hardly ever happen to be UTF-8.
LogEncoding encodingOf(std::string_view file) {
  const bool marked = file.starts_with(kUtf8Mark);
  if (isAscii(file) || !isUtf8(file)) return LogEncoding::CodePage;
  return marked ? LogEncoding::MarkedUtf8 : LogEncoding::Utf8;
}

GridOrder orderBy(int field) {
  if (field == LogFrequency || field == LogFilter) return {field, GridOrder::By::Number, {}};
  if (field == LogDate) return {field, GridOrder::By::Text, LogTime};
  return {field, GridOrder::By::Text, {}};
}

}  // namespace

LogTable::LogTable(std::string file, LogRejects& rejects)
    : file_(std::make_unique<const std::string>(std::move(file))) {
  std::string_view text = *file_;
  encoding_ = encodingOf(text);
  if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  // A list that grows while it is filled would need the memory of two.
  records_.reserve(std::min(linesIn(text), text.size() / kShortest + 1));
  for (LogLines line(text); line.next();) take(line, rejects);
  order_.resize(records_.size());
  std::iota(order_.begin(), order_.end(), GridRow{0});
}

void LogTable::take(const LogLines& line, LogRejects& rejects) {
  if (line.fields() == 1 && trimmed(line.line()).empty()) return;
  const LogLine kind = judgeLogLine(line);
  if (kind != LogLine::NoRecord) records_.push_back(line.line());
  wellFormed_ = wellFormed_ && (kind == LogLine::InForm || kind == LogLine::NoRecord);
  if (kind == LogLine::InForm || kind == LogLine::Record) return;
  rejects.lines.append(line.line()).append("\r\n");
  ++rejects.count;
}

std::string_view LogTable::field(GridRow record, int field) const {
  return logField(records_[record], field);
}

std::string LogTable::encoded(std::string_view utf8) const {
  return encoding_ == LogEncoding::CodePage ? toCodePage(utf8) : std::string(utf8);
}

std::string LogTable::decoded(std::string_view bytes) const {
  return encoding_ == LogEncoding::CodePage ? fromCodePage(bytes) : std::string(bytes);
}

std::string LogTable::lineText(GridRow record) const {
  std::string line;
  appendLogLine(line, records_[record]);
  line.resize(line.size() - kLogLineEnd.size());
  return decoded(line);
}

void LogTable::removeFrom(GridRow record) {
  records_.resize(record);
  std::erase_if(order_, [record](GridRow shown) { return shown >= record; });
}

void LogTable::apply(const LogChanges& changes) {
  auto removed = changes.removed();
  if (!removed.empty()) {
    std::vector<std::string_view> kept;
    for (GridRow record = 0; record < records_.size(); ++record) {
      const auto gone = removed.find(lineText(record));
      if (gone == removed.end() || gone->second == 0)
        kept.push_back(records_[record]);
      else
        --gone->second;
    }
    records_ = std::move(kept);
    order_.resize(records_.size());
    std::iota(order_.begin(), order_.end(), GridRow{0});
  }
  for (const std::string& line : changes.added()) {
    records_.push_back(keep(encoded(line)));
    order_.push_back(static_cast<GridRow>(records_.size() - 1));
  }
}

std::string_view LogTable::keep(std::string line) { return own_->emplace_back(std::move(line)); }

void LogTable::set(GridRow record, int field, std::string_view text) {
  LogRecord fields;
  for (int i = 0; i < kLogFields; ++i) fields[static_cast<std::size_t>(i)] = this->field(record, i);
  fields[static_cast<std::size_t>(field)] = text;
  records_[record] = keep(joinLogLine(fields));
}

GridRow LogTable::append(const LogRecord& record) {
  records_.push_back(keep(joinLogLine(record)));
  order_.push_back(static_cast<GridRow>(records_.size() - 1));
  return size() - 1;
}

LogTable::Removed LogTable::remove(GridRow row) {
  const GridRow record = order_[row];
  const Removed removed{record, row, records_[record]};
  records_.erase(records_.begin() + record);
  order_.erase(order_.begin() + row);
  for (GridRow& other : order_) other -= other > record ? 1 : 0;
  return removed;
}

void LogTable::restore(const Removed& removed) {
  for (GridRow& other : order_) other += other >= removed.record ? 1 : 0;
  records_.insert(records_.begin() + removed.record, removed.line);
  order_.insert(order_.begin() + std::min(removed.row, size()), removed.record);
}

std::vector<GridRow> LogTable::sorted(int field) const {
  std::vector<GridRow> order = order_;
  sortGrid(std::span(order), orderBy(field),
           [this](GridRow record, int column) { return this->field(record, column); });
  return order;
}

std::string LogTable::content() const {
  std::size_t length = 0;
  for (const std::string_view line : records_) length += line.size() + 2;
  std::string content(encoding_ == LogEncoding::MarkedUtf8 ? kUtf8Mark : "");
  content.reserve(length + content.size());
  for (const GridRow record : order_) {
    if (wellFormed_)
      content.append(records_[record]).append("\r\n");
    else
      appendLogLine(content, records_[record]);
  }
  return content;
}

}  // namespace kelvane
