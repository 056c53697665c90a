#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "grid/grid.h"
#include "station_log/log_import.h"

namespace kelvane {

/// The log of another program on its way into the station log: what was understood, and what an
/// import would do, line by line, as the table of a grid that is only looked at.
class LogImport : public GridTable {
 public:
  LogImport(std::shared_ptr<const std::string> bytes, LogReading reading, const LogTable& log)
      : bytes_(std::move(bytes)),
        reading_(std::move(reading)),
        plan_(planLogImport(reading_, log)),
        grid_(*this, columns()) {
    grid_.lock(true);
  }
  LogImport(const LogImport&) = delete;
  LogImport& operator=(const LogImport&) = delete;

  Grid& grid() { return grid_; }
  /// The file, for reading it otherwise.
  const std::shared_ptr<const std::string>& bytes() const { return bytes_; }
  const LogReading& reading() const { return reading_; }
  /// What was understood and what is going to be done, in words; or why nothing can be.
  std::string words() const;
  bool ready() const { return plan_.adds > 0; }
  /// The records that the log is to get.
  std::vector<LogRecord> records() const;

  GridRow rows() const override { return static_cast<GridRow>(plan_.rows.size()); }
  std::string cell(GridRow row, int column) const override;
  void store(GridCell, const std::string&) override {}

 private:
  static std::vector<GridColumn> columns();

  std::shared_ptr<const std::string> bytes_;
  LogReading reading_;
  LogPlan plan_;
  Grid grid_;
};

}  // namespace kelvane
