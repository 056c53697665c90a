#pragma once

#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "contract/components.h"

namespace kelvane::fakes {

/// Stands before a receiver component: writes down what it is told, each as one line
/// ("SelectRxChannel 0 7"), and answers that an operation failed where a test wants that.
class RecordingReceiver : public ReceiverComponent {
 public:
  explicit RecordingReceiver(ReceiverComponent& inner) : inner_(inner) {}

#define ASK(name, Result, fallback, params, args) \
  Answer<Result> name params override {           \
    called_ = #name;                              \
    note args;                                    \
    return inner_.name args;                      \
  }
#define TELL(name, params, args)                      \
  Outcome name params override {                      \
    called_ = #name;                                  \
    note args;                                        \
    hear(#name + joined args);                        \
    if (refused.count(#name)) return Outcome::Failed; \
    return inner_.name args;                          \
  }
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL

  /// What it was told by that name since it was last asked.
  std::vector<std::string> told(const std::string& name) {
    std::vector<std::string> lines;
    for (const std::string& line : told()) {
      if (line.starts_with(name + " ")) lines.push_back(line);
    }
    return lines;
  }
  /// Everything that it was told since it was last asked.
  std::vector<std::string> told() { return std::exchange(told_, {}); }
  std::set<std::string> refused;
  /// What it was told or asked of a receiver: "GetRxName" of 0.
  std::set<std::pair<std::string_view, Index>> named;
  /// Called with each line instead of keeping it.
  std::function<void(const std::string&)> heard;

 private:
  void note() {}
  template <class First, class... Rest>
  void note(const First& first, const Rest&...) {
    if constexpr (std::is_same_v<First, Index>) named.emplace(called_, first);
  }
  void hear(std::string line) {
    if (heard) return heard(line);
    told_.push_back(std::move(line));
  }
  template <class... Values>
  static std::string joined(const Values&... values) {
    std::ostringstream text;
    ((text << " " << values), ...);
    return text.str();
  }

  ReceiverComponent& inner_;
  const char* called_ = "";
  std::vector<std::string> told_;
};

}  // namespace kelvane::fakes
