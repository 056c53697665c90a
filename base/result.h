#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <utility>

namespace kelvane {

/// Why something was not done.
struct Failure {
  std::string reason;  ///< in words, for the operator
  bool held = false;   ///< another program is in the way at this moment: a later try may succeed
};

/// What came of something that can fail: its value, or why there is none. `Result<>` is of
/// something that has no value.
template <class T = void>
class Result {
 public:
  template <std::convertible_to<T> Value>
  Result(Value&& value)
      : value_(std::in_place, std::forward<Value>(value)) {}  // NOLINT: it is its value
  Result(Failure failure) : failure_(std::move(failure)) {}   // NOLINT: or its failure

  bool ok() const { return value_.has_value(); }
  explicit operator bool() const { return ok(); }
  /// Why there is no value, in words; empty where there is one.
  const std::string& reason() const { return failure_.reason; }
  /// Whether a later try may succeed, since another program is in the way at this moment.
  bool held() const { return failure_.held; }
  const Failure& failure() const { return failure_; }

  /// The value; to be asked for only where there is one.
  T& operator*() { return *value_; }
  const T& operator*() const { return *value_; }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }

 private:
  std::optional<T> value_;
  Failure failure_;
};

template <>
class Result<void> {
 public:
  Result() = default;
  Result(Failure failure) : ok_(false), failure_(std::move(failure)) {}  // NOLINT: as above

  bool ok() const { return ok_; }
  explicit operator bool() const { return ok_; }
  const std::string& reason() const { return failure_.reason; }
  bool held() const { return failure_.held; }
  const Failure& failure() const { return failure_; }

 private:
  bool ok_ = true;
  Failure failure_;
};

/// What came of something that answers in words what went wrong, and nothing where nothing did, as
/// operations of components do.
inline Result<> resultOf(const std::string& wrong) {
  return wrong.empty() ? Result<>() : Result<>(Failure{wrong});
}

}  // namespace kelvane
