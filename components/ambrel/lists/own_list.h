#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "components/ambrel/lists/own_file.h"

namespace kelvane::lists {

/// The operator's own list in memory. Each entry has a number that stays its own; every change is a
/// step that can be taken back and done again, however many entries it is about.
class OwnList {
 public:
  using Id = std::uint32_t;
  /// Entries by their numbers; none where the entry is to go.
  using Edits = std::vector<std::pair<Id, EntryPtr>>;

  /// Numbers are below this one; not all of them are taken.
  Id end() const { return static_cast<Id>(slots_.size()); }
  std::size_t count() const { return count_; }
  /// None where the entry is gone.
  const EntryPtr& at(Id id) const { return slots_[id]; }

  /// Changes, adds (with numbers from end() on) and removes entries in one step.
  void edit(const Edits& edits);
  bool canUndo() const { return !undo_.empty(); }
  bool canRedo() const { return !redo_.empty(); }
  /// Answer whether there was a step.
  bool undo();
  bool redo();
  /// The entries that the last change was about; none where the list became another one's.
  const std::vector<Id>& lastStep() const { return lastStep_; }

  /// Grows with every change.
  std::uint64_t version() const { return version_; }
  /// The list as it is kept.
  OwnText text() const;
  /// The list becomes what the file holds. Entries that are in both keep their numbers; steps can
  /// still be taken back.
  void adopt(const OwnText& text);

 private:
  struct Change {
    Id id;
    EntryPtr before, after;
  };
  using Step = std::vector<Change>;
  static constexpr std::size_t kMostSteps = 1000;
  /// Changes of entries that all steps hold together, but for the last one, however long.
  static constexpr std::size_t kMostChanges = 3'000'000;

  void set(Id id, EntryPtr entry);
  void play(const Step& step, bool forward);
  void forgetOldSteps();

  std::vector<EntryPtr> slots_;
  std::size_t count_ = 0;
  std::vector<std::string> comments_, unread_;
  std::deque<Step> undo_;
  std::vector<Step> redo_;
  std::vector<Id> lastStep_;
  std::uint64_t version_ = 0;
};

}  // namespace kelvane::lists
