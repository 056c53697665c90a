#pragma once

#include <utility>

namespace kelvane {

/// How an operation of a component ended.
enum class Outcome {
  Done,         ///< carried out, or accepted for carrying out
  Failed,       ///< refused or gone wrong; nothing changed
  Unsupported,  ///< the component does not have this operation
};

/// What an operation that returns data answered: the value, and whether the operation succeeded.
///
/// After a failure the value is the operation's stated fallback ("no frequency", "not online",
/// empty text), so that a caller for whom a failure means "nothing known" simply reads the value.
template <class T>
class Answer {
 public:
  Answer(T value) : value_(std::move(value)) {}  // NOLINT: an answer is its value

  static Answer failed(T fallback, Outcome why = Outcome::Failed) {
    Answer answer(std::move(fallback));
    answer.outcome_ = why;
    return answer;
  }

  operator const T&() const { return value_; }  // NOLINT: an answer is its value
  const T& value() const { return value_; }
  bool ok() const { return outcome_ == Outcome::Done; }
  Outcome outcome() const { return outcome_; }

 private:
  T value_;
  Outcome outcome_ = Outcome::Done;
};

}  // namespace kelvane
