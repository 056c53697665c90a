#pragma once

#include <atomic>

namespace kelvane::com {

/// How many objects and locks keep a component's library in memory.
class ObjectCount {
 public:
  void add() { ++count_; }
  void remove() { --count_; }
  bool none() const { return count_ == 0; }

 private:
  std::atomic<long> count_{0};
};

/// One object's part in the count.
class Counted {
 public:
  explicit Counted(ObjectCount& count) : count_(count) { count_.add(); }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { count_.remove(); }

 private:
  ObjectCount& count_;
};

}  // namespace kelvane::com
