#include "companions/setting_names.h"

namespace kelvane {

void SettingNames::open(Index rx) {
  rx_ = rx;
  available_.clear();
  names_.clear();
  values_.clear();
  const bool modes = what_ == What::Modes;
  const Count count = modes ? component_.GetRxModeCount(rx) : component_.GetRxAgcCount(rx);
  for (Setting value = 0; value < count; ++value) {
    if (has(value)) available_.push_back(name(value));
  }
}

bool SettingNames::has(Setting value) const {
  return what_ == What::Modes ? component_.HasRxMode(rx_, value) : component_.HasRxAgc(rx_, value);
}

const std::string& SettingNames::name(Setting value) {
  const auto known = names_.find(value);
  if (known != names_.end()) return known->second;
  const Text asked = what_ == What::Modes ? component_.GetRxModeName(rx_, value)
                                          : component_.GetRxAgcName(rx_, value);
  return names_[value] = asked;
}

Setting SettingNames::value(std::string_view name) {
  const auto known = values_.find(name);
  if (known != values_.end()) return known->second;
  const std::string text(name);
  const Setting asked = what_ == What::Modes ? component_.GetRxModeValue(rx_, text)
                                             : component_.GetRxAgcValue(rx_, text);
  // A file of nonsense must not make the list of names grow without end.
  if (asked >= 0) values_[text] = asked;
  return asked;
}

}  // namespace kelvane
