#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/safe_file.h"
#include "base/work_beside.h"
#include "components/ambrel/formats/import_plan.h"
#include "grid/grid.h"

namespace kelvane {

/// A list of another program on its way into the operator's: what was understood, and what an
/// import would do, line by line. The file is read and understood beside the window; deliver()
/// takes over what came of it.
class StationImport : public GridTable {
 public:
  /// `own` is the operator's list, by its numbers.
  StationImport(std::filesystem::path file, std::shared_ptr<FileSteps> disk, lists::Entries own,
                std::function<void()> wake = {});
  ~StationImport() override { drop(); }

  static std::vector<GridColumn> columns();

  /// Nobody wants it any more: what is under way ends early.
  void drop() { *dropped_ = true; }
  /// Answers whether anything that is shown changed.
  bool deliver() { return work_.deliver(); }
  bool busy() const { return work_.busy(); }
  const std::filesystem::path& file() const { return file_; }
  const formats::Reading& reading() const { return *reading_; }
  const formats::ImportPlan& plan() const { return plan_; }
  /// What was understood and what is going to be done, in words; or why nothing can be.
  std::string words() const;
  /// There is something to take in.
  bool ready() const { return !busy() && plan_.adds + plan_.changes > 0; }

  formats::Rule rule() const { return rule_; }
  void setRule(formats::Rule rule);
  /// Reads a table otherwise than was guessed.
  void setShape(const formats::TableShape& shape);
  /// Parts the columns by another sign, and guesses the rest anew.
  void setDelimiter(char delimiter);
  bool isTable() const { return reading_->format == formats::Format::Csv && !busy(); }

  GridRow rows() const override { return static_cast<GridRow>(plan_.rows.size()); }
  std::string cell(GridRow row, int column) const override;
  void store(GridCell, const std::string&) override {}

 private:
  struct Found {
    std::string refusal;
    std::shared_ptr<const std::string> bytes;
    std::shared_ptr<const formats::Reading> reading;
    formats::ImportPlan plan;
  };

  /// How much of it is to be done anew.
  enum class From { File, Bytes, Reading };
  void start(From from);
  void take(Found found);

  std::filesystem::path file_;
  std::shared_ptr<FileSteps> disk_;
  std::shared_ptr<const lists::Entries> own_;
  std::shared_ptr<const std::string> bytes_;
  std::shared_ptr<const formats::Reading> reading_ = std::make_shared<const formats::Reading>();
  formats::ImportPlan plan_;
  formats::Rule rule_ = formats::Rule::Merge;
  formats::TableShape shape_;  ///< without fields: as guessed
  char delimiter_ = 0;         ///< that the guess is made with; 0: guessed too
  std::string refusal_;
  std::shared_ptr<std::atomic<bool>> dropped_ = std::make_shared<std::atomic<bool>>(false);
  std::optional<From> queued_;  ///< what was asked for while the work before was under way
  WorkBeside work_;
};

}  // namespace kelvane
