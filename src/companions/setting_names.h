#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "contract/components.h"

namespace kelvane {

/// The names of a receiver's modes or of its AGC values, asked of the component once: grids paint
/// and files hold the same few over and over.
class SettingNames {
 public:
  enum class What { Modes, Agc };

  SettingNames(ReceiverComponent& component, What what) : component_(component), what_(what) {}

  /// Works for this receiver from now on.
  void open(Index rx);

  /// Of the values that the receiver declares available, in ascending order.
  const std::vector<std::string>& available() const { return available_; }
  const std::string& name(Setting value);
  /// -1 for a name that the component does not know.
  Setting value(std::string_view name);

 private:
  bool has(Setting value) const;

  ReceiverComponent& component_;
  What what_;
  Index rx_ = 0;
  std::vector<std::string> available_;
  std::map<Setting, std::string> names_;
  std::map<std::string, Setting, std::less<>> values_;
};

}  // namespace kelvane
