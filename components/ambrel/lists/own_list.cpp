#include "components/ambrel/lists/own_list.h"

#include <functional>
#include <unordered_map>

namespace kelvane::lists {

namespace {

/// Enough of an entry to tell most from each other; the rest is compared.
std::size_t keyOf(const Entry& entry) {
  return std::hash<std::string>()(entry.name) * 31 + static_cast<std::size_t>(entry.frequency);
}

}  // namespace

void OwnList::set(Id id, EntryPtr entry) {
  if (id >= slots_.size()) slots_.resize(id + 1);
  if (entry) ++count_;
  if (slots_[id]) --count_;
  slots_[id] = std::move(entry);
}

void OwnList::edit(const Edits& edits) {
  Step step;
  lastStep_.clear();
  for (const auto& [id, entry] : edits) {
    const EntryPtr before = id < slots_.size() ? slots_[id] : nullptr;
    if (before == entry || (before && entry && *before == *entry)) continue;
    step.push_back({id, before, entry});
    set(id, entry);
    lastStep_.push_back(id);
  }
  if (step.empty()) return;
  undo_.push_back(std::move(step));
  redo_.clear();
  forgetOldSteps();
  ++version_;
}

void OwnList::forgetOldSteps() {
  std::size_t changes = 0;
  for (const Step& step : undo_) changes += step.size();
  for (; undo_.size() > 1 && (undo_.size() > kMostSteps || changes > kMostChanges);
       undo_.pop_front())
    changes -= undo_.front().size();
}

void OwnList::play(const Step& step, bool forward) {
  lastStep_.clear();
  for (const Change& change : step) {
    set(change.id, forward ? change.after : change.before);
    lastStep_.push_back(change.id);
  }
  ++version_;
}

bool OwnList::undo() {
  if (undo_.empty()) return false;
  play(undo_.back(), false);
  redo_.push_back(std::move(undo_.back()));
  undo_.pop_back();
  return true;
}

bool OwnList::redo() {
  if (redo_.empty()) return false;
  play(redo_.back(), true);
  undo_.push_back(std::move(redo_.back()));
  redo_.pop_back();
  return true;
}

OwnText OwnList::text() const {
  OwnText text;
  text.entries.reserve(count_);
  for (const EntryPtr& entry : slots_) {
    if (entry) text.entries.push_back(entry);
  }
  text.comments = comments_;
  text.unread = unread_;
  return text;
}

void OwnList::adopt(const OwnText& text) {
  std::unordered_multimap<std::size_t, Id> here;
  here.reserve(count_);
  for (Id id = 0; id < end(); ++id) {
    if (slots_[id]) here.emplace(keyOf(*slots_[id]), id);
  }
  Entries added;
  for (const EntryPtr& entry : text.entries) {
    auto [at, last] = here.equal_range(keyOf(*entry));
    while (at != last && !(*slots_[at->second] == *entry)) ++at;
    if (at == last)
      added.push_back(entry);
    else
      here.erase(at);
  }
  for (const auto& [key, id] : here) set(id, nullptr);
  for (EntryPtr& entry : added) set(end(), std::move(entry));
  comments_ = text.comments;
  unread_ = text.unread;
  lastStep_.clear();
  ++version_;
}

}  // namespace kelvane::lists
