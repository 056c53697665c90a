#include "ui/colours.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelvane {

namespace {

/// A colour as it is usually written, 0xRRGGBB.
constexpr Colour shade(std::uint32_t written) {
  return Colour::rgb(static_cast<std::uint8_t>(written >> 16),
                     static_cast<std::uint8_t>(written >> 8), static_cast<std::uint8_t>(written));
}

constexpr Colours kDark{
    .window = shade(0x1F2226),
    .field = shade(0x16181B),
    .button = shade(0x2B3035),
    .pressed = shade(0x2A5F7A),
    .selection = shade(0x223842),
    .text = shade(0xE6E8EA),
    .quiet = shade(0xA3ACB4),
    .accent = shade(0x4CC2FF),
    .good = shade(0x5FD38D),
    .warning = shade(0xFFC080),
    .bad = shade(0xFF7B76),
    .faint = shade(0x4A5158),
    .onSelection = shade(0xF2F4F5),
    .line = shade(0x343A40),
    .grid = shade(0x2A2F34),
    .focus = shade(0x4CC2FF),
    .bar = {shade(0x23272B), shade(0x5FD38D), shade(0xFFC080), shade(0xFFFFFF), shade(0x4CC2FF),
            shade(0xFF7B76)},
    .traces = {shade(0x4CC2FF), shade(0xFFC080), shade(0x5FD38D), shade(0xFF9ECB), shade(0xF2F27A),
               shade(0xB39DFF), shade(0xE6E8EA), shade(0xFF8A7D)},
};

constexpr Colours kLight{
    .window = shade(0xF4F5F6),
    .field = shade(0xFFFFFF),
    .button = shade(0xFFFFFF),
    .pressed = shade(0xCFE8F5),
    .selection = shade(0xDCECF8),
    .text = shade(0x1B1F23),
    .quiet = shade(0x56606A),
    .accent = shade(0x0060B4),
    .good = shade(0x0D7038),
    .warning = shade(0x8C5200),
    .bad = shade(0xB3261E),
    .faint = shade(0xC2C8CE),
    .onSelection = shade(0x1B1F23),
    .line = shade(0xC9CFD5),
    .grid = shade(0xE1E5E9),
    .focus = shade(0x0060B4),
    .bar = {shade(0xE6E9EC), shade(0x0D7038), shade(0x8C5200), shade(0x1B1F23), shade(0x0060B4),
            shade(0xB3261E)},
    .traces = {shade(0x0060B4), shade(0x8C5200), shade(0x0D7038), shade(0xA0006E), shade(0x5C5C00),
               shade(0x5B2FC9), shade(0x1B1F23), shade(0xB3261E)},
};

/// Red alone, for eyes that are to stay used to the dark.
constexpr Colours kNight{
    .window = shade(0x000000),
    .field = shade(0x0A0000),
    .button = shade(0x120302),
    .pressed = shade(0x4A0F0A),
    .selection = shade(0x2A0705),
    .text = shade(0xFF5A4D),
    .quiet = shade(0xDC5A50),
    .accent = shade(0xFF7A6E),
    .good = shade(0xFF5A4D),
    .warning = shade(0xFF8A70),
    .bad = shade(0xFF3A2D),
    .faint = shade(0x4A120E),
    .onSelection = shade(0xFF8A80),
    .line = shade(0x4A120E),
    .grid = shade(0x3A0D0A),
    .focus = shade(0xFF7A6E),
    .bar = {shade(0x260806), shade(0xE8493C), shade(0xFF9A88), shade(0xFFC4B8), shade(0xFFC4B8),
            shade(0xFF7A6E)},
    .traces = {shade(0xFF7A6E), shade(0xFF3A2D), shade(0xFFC4B8), shade(0xDC5A50), shade(0xFF9A88),
               shade(0xE8493C), shade(0xFFE0D8), shade(0xFF5A4D)},
};

constexpr Colour kSystemWindow = Colour::system(5), kHighlight = Colour::system(13),
                 kHighlightText = Colour::system(14), kGrey = Colour::system(17),
                 kButtonText = Colour::system(18), kLink = Colour::system(26);

/// The user's own pairs of colours; what a colour says elsewhere is then said by shape and words.
constexpr Colours kContrast{
    .window = kSystemWindow,
    .field = kSystemWindow,
    .button = kButtonFace,
    .pressed = kHighlight,
    .selection = kHighlight,
    .text = kWindowText,
    .quiet = kWindowText,
    .accent = kWindowText,
    .good = kWindowText,
    .warning = kWindowText,
    .bad = kWindowText,
    .faint = kGrey,
    .onSelection = kHighlightText,
    .line = kButtonText,
    .grid = kGrey,
    .focus = kHighlight,
    .bar = {kSystemWindow, kWindowText, kLink, kWindowText, kWindowText, kWindowText},
    .traces = {kWindowText, kLink, kWindowText, kLink, kWindowText, kLink, kWindowText, kLink},
};

/// The same colours on black.
constexpr Colours onBlack(Colours colours) {
  colours.window = colours.field = kBlack;
  return colours;
}

constexpr Palette kPalettes[] = {
    {.windows = kDark, .panel = onBlack(kDark), .dark = true},
    {.windows = kLight, .panel = onBlack(kDark)},
    {.windows = kNight, .panel = onBlack(kNight), .dark = true, .night = true},
    {.windows = kContrast, .panel = kContrast, .contrast = true},
};

struct RedGreenBlue {
  int red, green, blue;

  explicit RedGreenBlue(Colour c)
      : red(static_cast<int>(c.value & 0xFF)),
        green(static_cast<int>(c.value >> 8 & 0xFF)),
        blue(static_cast<int>(c.value >> 16 & 0xFF)) {}
  int lightest() const { return std::max({red, green, blue}); }
  int darkest() const { return std::min({red, green, blue}); }
  bool grey() const { return lightest() - darkest() < 24; }
  bool isRed() const { return red > 200 && green < 100 && blue < 100; }
};

double luminance(Colour colour) {
  const auto linear = [](int part) {
    const double share = part / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  const RedGreenBlue parts(colour);
  return 0.2126 * linear(parts.red) + 0.7152 * linear(parts.green) + 0.0722 * linear(parts.blue);
}

Colour inkAtNight(Colour given) {
  const RedGreenBlue parts(given);
  if (parts.isRed()) return kNight.bad;
  if (parts.lightest() < 100) return kNight.faint;
  if (parts.grey()) return kNight.quiet;
  return parts.red > 200 ? kNight.warning : kNight.text;
}

/// Yellow is what is switched on; blue tones are settings.
Colour groundAtNight(Colour given) {
  const RedGreenBlue parts(given);
  if (parts.isRed()) return kNight.bad;
  if (parts.lightest() < 30) return kNight.window;
  if (parts.lightest() < 100) return kNight.faint;
  if (parts.grey()) return kNight.selection;
  return parts.blue > 200 ? kNight.pressed : kNight.accent;
}

Colour ofSystem(Colour given, const Colours& colours) {
  return given == kWindowText ? colours.text : colours.button;
}

std::vector<TextPair> pairs() {
  std::vector<TextPair> all;
  for (const auto ground :
       {&Colours::window, &Colours::field, &Colours::button, &Colours::selection}) {
    for (const auto text : {&Colours::text, &Colours::quiet, &Colours::accent, &Colours::good,
                            &Colours::warning, &Colours::bad})
      all.push_back({text, ground});
  }
  all.push_back({&Colours::text, &Colours::pressed});
  all.push_back({&Colours::onSelection, &Colours::selection});
  return all;
}

}  // namespace

ColourChoice colourChoice(std::int32_t stored) {
  const bool known = stored > 0 && stored < static_cast<std::int32_t>(kColourChoices.size());
  return known ? static_cast<ColourChoice>(stored) : ColourChoice::AsSystem;
}

const Palette& paletteFor(ColourChoice choice, SystemLook system) {
  enum Set { Dark, Light, Night, Contrast };
  if (system.contrast) return kPalettes[Contrast];
  if (choice == ColourChoice::Night) return kPalettes[Night];
  const bool dark = choice == ColourChoice::AsSystem ? system.dark : choice == ColourChoice::Dark;
  return kPalettes[dark ? Dark : Light];
}

Colour Palette::ink(Colour given, const Colours& set) const {
  if (contrast) return set.text;
  if (given.isSystem()) return ofSystem(given, set);
  return night ? inkAtNight(given) : given;
}

Colour Palette::ground(Colour given, const Colours& set) const {
  if (contrast) return given == kMenuColour || given == kButtonFace ? set.button : set.window;
  if (given.isSystem()) return ofSystem(given, set);
  return night ? groundAtNight(given) : given;
}

double contrast(Colour a, Colour b) {
  const double one = luminance(a) + 0.05, other = luminance(b) + 0.05;
  return std::max(one, other) / std::min(one, other);
}

Colour Palette::lettersOn(Colour ground) const {
  const Colour pale = shade(night ? 0xFFC4B8 : 0xF2F4F5), ink = shade(night ? 0x000000 : 0x101418);
  return kelvane::contrast(ground, pale) > kelvane::contrast(ground, ink) ? pale : ink;
}

std::span<const TextPair> textPairs() {
  static const std::vector<TextPair> all = pairs();
  return all;
}

}  // namespace kelvane
