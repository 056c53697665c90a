#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "components/ambrel/lists/own_store.h"
#include "grid/grid.h"

namespace kelvane {

/// What of the operator's list is shown.
struct StationFilter {
  std::string text = {};   ///< what name, group, tags or note hold, or the kHz begin with
  std::string group = {};  ///< empty: all
  bool favourites = false;

  bool operator==(const StationFilter&) const = default;
};

/// The operator's list as the table of a grid: filtered and sorted, with rows that are marked so
/// that an edit reaches all of them.
class StationGrid : public GridTable {
 public:
  using Id = lists::OwnList::Id;
  enum Columns { Mark, Khz, Name, Mode, Width, Group, Tags, Utc, Days, Favourite, Skip, Note };

  /// What the grid's keys ask for.
  struct Commands {
    std::function<void(Id)> tune;
    std::function<void()> remove, undo, redo, changed;
    std::function<void(const std::string& why)> refuse;
  };

  StationGrid(lists::OwnStore& store, Commands commands)
      : store_(store), commands_(std::move(commands)) {}

  static std::vector<GridColumn> columns();

  /// Seeks the rows anew where the list or the filter is another. Answers whether it was so.
  bool follow();
  void setFilter(StationFilter filter) { filter_ = std::move(filter); }
  const StationFilter& filter() const { return filter_; }
  const std::vector<Id>& shown() const { return rows_; }
  /// The row of an entry; rows() where it is not shown.
  GridRow rowOf(Id id) const;
  /// The marked ones among those shown, in their order; where none is, that of the row.
  std::vector<Id> chosen(GridRow current) const;
  /// The marked ones among those shown, in their order.
  std::vector<Id> markedShown() const;
  std::size_t marked() const { return marked_; }
  int sortedBy() const { return sort_; }

  GridRow rows() const override { return static_cast<GridRow>(rows_.size()); }
  std::string cell(GridRow row, int column) const override;
  void store(GridCell cell, const std::string& text) override;
  bool accepts(int column, char32_t character) const override;
  std::string corrected(GridCell cell, const std::string& text) const override;
  std::vector<std::string> choices(int column) const override;
  bool keyDown(int keyCode, int shift) override;
  bool clicked(GridCell cell) override;
  void recall(GridRow row) override;
  void headerClicked(int column) override;
  bool undo() override {
    commands_.undo();
    return true;
  }

  /// The row that the grid stands on, for keys that act on it.
  std::function<GridRow()> currentRow;

 private:
  bool takes(const lists::Entry& entry, const std::string& upperText) const;
  bool isMarked(Id id) const { return id < marks_.size() && marks_[id]; }
  void mark(Id id, bool marked);
  void toggleMark(GridRow row);
  bool isBefore(Id a, Id b) const;
  void seek();
  void sort();
  bool placeAnew(const std::vector<Id>& changed);
  static std::string text(const lists::Entry& entry, int column);
  /// Why a text cannot stand in a column; empty where it can, and then the entry has it.
  static Result<> put(lists::Entry& entry, int column, const std::string& text);

  lists::OwnStore& store_;
  Commands commands_;
  StationFilter filter_, soughtFilter_;
  std::uint64_t soughtVersion_ = ~std::uint64_t{0};
  int sort_ = Khz;
  bool descending_ = false, resort_ = false;
  std::vector<Id> all_;      ///< in their order
  std::vector<Id> rows_;     ///< those of them that the filter takes
  std::vector<bool> marks_;  ///< by numbers; those beyond its end are not marked
  std::size_t marked_ = 0;
};

}  // namespace kelvane
