#include "ui/colours.h"

#include <gtest/gtest.h>

#include <set>

namespace kelvane {
namespace {

constexpr SystemLook kLightSystem{}, kDarkSystem{.dark = true}, kHighContrast{.contrast = true};

/// The sets that are numbers, and the panel's own of each.
std::vector<std::pair<std::string, const Colours*>> sets() {
  std::vector<std::pair<std::string, const Colours*>> all;
  for (const auto choice : {ColourChoice::Dark, ColourChoice::Light, ColourChoice::Night}) {
    const Palette& palette = paletteFor(choice, kLightSystem);
    const std::string name(kColourChoices[static_cast<std::size_t>(choice)]);
    all.emplace_back(name, &palette.windows);
    all.emplace_back(name + ", panel", &palette.panel);
  }
  return all;
}

TEST(Colours, EveryTextCanBeReadOnEveryGroundItStandsOn) {
  EXPECT_NEAR(contrast(kBlack, Colour::rgb(255, 255, 255)), 21, 0.01);
  EXPECT_NEAR(contrast(kBlack, kRed), 5.25, 0.01) << "a known value";
  for (const auto& [name, colours] : sets()) {
    for (const TextPair& pair : textPairs()) {
      EXPECT_GE(contrast(colours->*pair.text, colours->*pair.ground), 4.5)
          << name << ", text " << std::hex << (colours->*pair.text).value << " on "
          << (colours->*pair.ground).value;
    }
    for (const Colour trace : colours->traces) {
      for (const Colour ground : {colours->window, colours->field})
        EXPECT_GE(contrast(trace, ground), 4.5) << name << std::hex << ", trace " << trace.value;
    }
  }
}

TEST(Colours, BarsAndMarksAreSeenOnWhatTheyLieOn) {
  for (const auto& [name, colours] : sets()) {
    const Colours::Bar& bar = colours->bar;
    for (const Colour mark :
         {bar.level, bar.over, bar.peak, bar.mean, bar.squelch, colours->focus}) {
      for (const Colour ground : {bar.empty, colours->field, colours->window})
        EXPECT_GE(contrast(mark, ground), 3) << name << std::hex << ", " << mark.value;
    }
  }
}

TEST(Colours, TracesDifferWithoutTheirHue) {
  const std::set<std::array<std::uint8_t, 6>> dashes(kTraceDashes.begin(), kTraceDashes.end());
  EXPECT_EQ(dashes.size(), kTraceDashes.size());
  for (const auto& [name, colours] : sets()) {
    std::set<std::uint32_t> values;
    for (const Colour trace : colours->traces) values.insert(trace.value);
    EXPECT_EQ(values.size(), colours->traces.size()) << name;
  }
}

TEST(Colours, HighContrastStandsBeforeTheChoiceAndTheChoiceBeforeTheSystem) {
  for (int stored = -1; stored <= 4; ++stored) {
    const Palette& contrast = paletteFor(colourChoice(stored), kHighContrast);
    EXPECT_TRUE(contrast.contrast);
    EXPECT_TRUE(contrast.windows.text.isSystem() && contrast.panel.bar.level.isSystem());
    const Palette& dark = paletteFor(colourChoice(stored), kDarkSystem);
    const Palette& light = paletteFor(colourChoice(stored), kLightSystem);
    EXPECT_EQ(&dark == &light, stored >= 1 && stored <= 3) << stored;
    EXPECT_EQ(dark.dark, stored != 2) << stored;
    EXPECT_EQ(light.dark, stored == 1 || stored == 3) << stored;
    EXPECT_EQ(light.panel.window, kBlack) << "the panel stays black";
  }
}

TEST(Colours, NumbersKeepTheirMeaningByDayAndAreRedAtNight) {
  const Palette& light = paletteFor(ColourChoice::Light, kDarkSystem);
  const Palette& night = paletteFor(ColourChoice::Night, kDarkSystem);
  const auto isRed = [](Colour colour) {
    const auto part = [&](int shift) { return colour.value >> shift & 0xFF; };
    return part(0) >= 2 * part(8) * 3 / 4 && part(0) >= part(16) * 3 / 2;
  };
  for (const Colour given : {kGreen, kRed, kQuietText, Colour::rgb(128, 255, 255),
                             Colour::rgb(255, 255, 0), Colour::rgb(255, 192, 128)}) {
    EXPECT_EQ(light.ink(given, light.panel), given);
    EXPECT_EQ(light.ground(given, light.panel), given);
    EXPECT_TRUE(isRed(night.ink(given, night.panel))) << std::hex << given.value;
    EXPECT_GE(contrast(night.ink(given, night.panel), kBlack), 4.5) << std::hex << given.value;
    EXPECT_TRUE(isRed(night.ground(given, night.panel))) << std::hex << given.value;
    EXPECT_GE(contrast(night.ground(given, night.panel),
                       night.lettersOn(night.ground(given, night.panel))),
              4.5);
  }
  EXPECT_NE(night.ink(kGreen, night.panel), night.ink(kRed, night.panel));
  EXPECT_NE(night.ground(Colour::rgb(255, 255, 0), night.windows),
            night.ground(kMenuColour, night.windows))
      << "the master";
  EXPECT_EQ(light.ground(kMenuColour, light.windows), light.windows.button);
}

}  // namespace
}  // namespace kelvane
