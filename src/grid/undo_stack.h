#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <utility>

namespace kelvane {

/// The edits of a table that can be taken back, the newest first; the oldest are forgotten.
class UndoStack {
 public:
  explicit UndoStack(std::size_t most = 1000) : most_(most) {}

  /// Remembers how an edit is taken back. That may be called once, at any later time.
  void add(std::function<void()> takeBack) {
    if (steps_.size() == most_) steps_.pop_front();
    steps_.push_back(std::move(takeBack));
  }
  /// Takes the newest edit back. Answers whether there was one.
  bool takeBack() {
    if (steps_.empty()) return false;
    const auto step = std::move(steps_.back());
    steps_.pop_back();
    step();
    return true;
  }
  void clear() { steps_.clear(); }

 private:
  std::size_t most_;
  std::deque<std::function<void()>> steps_;
};

}  // namespace kelvane
