#include "settings/options.h"

namespace kelvane {

namespace {

constexpr std::string_view kDdeNameSetting = "DDEName";
constexpr std::string_view kPlaceSetting = "Place";
constexpr std::string_view kColoursSetting = "Colours";

}  // namespace

Options::Options() : OptDDEName("Kelvane") {
  for (const OptionRow& row : kOptionRows) this->*row.member = row.fallback;
}

Options loadOptions(const SettingsStore& settings) {
  Options options;
  for (const OptionRow& row : kOptionRows)
    options.*row.member = settings.flag(row.setting, row.fallback);
  options.OptDDEName = settings.text(kDdeNameSetting, options.OptDDEName);
  options.OptPlace = settings.text(kPlaceSetting, options.OptPlace);
  options.OptColours = colourChoice(settings.number(kColoursSetting, 0));
  return options;
}

Options joinOptions(const Options& before, const Options& mine, const Options& stored) {
  Options joined = stored;
  for (const OptionRow& row : kOptionRows)
    if (mine.*row.member != before.*row.member) joined.*row.member = mine.*row.member;
  if (mine.OptDDEName != before.OptDDEName) joined.OptDDEName = mine.OptDDEName;
  if (mine.OptPlace != before.OptPlace) joined.OptPlace = mine.OptPlace;
  if (mine.OptColours != before.OptColours) joined.OptColours = mine.OptColours;
  return joined;
}

bool saveOptions(const Options& options, SettingsStore& settings) {
  bool written = true;
  for (const OptionRow& row : kOptionRows)
    written = settings.writeFlag(row.setting, options.*row.member) && written;
  written = settings.writeText(kDdeNameSetting, options.OptDDEName) && written;
  written = settings.writeText(kPlaceSetting, options.OptPlace) && written;
  const auto colours = static_cast<std::int32_t>(options.OptColours);
  return settings.writeNumber(kColoursSetting, colours) && written;
}

}  // namespace kelvane
