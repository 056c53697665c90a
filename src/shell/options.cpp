#include "shell/options.h"

namespace kelvane {

namespace {

constexpr std::string_view kDdeNameSetting = "DDEName";

}  // namespace

Options::Options() : OptDDEName("Kelvane") {
  for (const OptionRow& row : kOptionRows) this->*row.member = row.fallback;
}

Options loadOptions(const SettingsStore& settings) {
  Options options;
  for (const OptionRow& row : kOptionRows)
    options.*row.member = settings.flag(row.setting, row.fallback);
  options.OptDDEName = settings.text(kDdeNameSetting, options.OptDDEName);
  return options;
}

bool saveOptions(const Options& options, SettingsStore& settings) {
  bool written = true;
  for (const OptionRow& row : kOptionRows)
    written = settings.writeFlag(row.setting, options.*row.member) && written;
  return settings.writeText(kDdeNameSetting, options.OptDDEName) && written;
}

}  // namespace kelvane
