#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "ui/colour.h"

namespace kelvane {

/// What the operator chose; stored as this number.
enum class ColourChoice : std::uint8_t { AsSystem, Dark, Light, Night };

/// The choices as the options dialog names them, in the order of their numbers.
inline constexpr std::array<std::string_view, 4> kColourChoices{"as the system", "dark", "light",
                                                                "night (red)"};

constexpr std::string_view coloursName(ColourChoice choice) {
  return kColourChoices[static_cast<std::size_t>(choice)];
}

/// A stored number as a choice; any other number is the system's.
ColourChoice colourChoice(std::int32_t stored);

/// What is drawn on one kind of ground, each colour by what it is for. Every text keeps 4.5 to 1
/// on every ground that `textPairs` names, bars and marks 3 to 1 on `bar.empty` and `field`.
struct Colours {
  // Grounds.
  Colour window;  ///< of windows and, in the panel's own set, of the black panel
  Colour field;   ///< of tables, traces and what is typed into
  Colour button;
  Colour pressed;    ///< a button that is down; it bears `text` alone
  Colour selection;  ///< the row that is marked or shown
  // Texts and signs.
  Colour text;
  Colour quiet;   ///< what is no value: units, headings, notes
  Colour accent;  ///< what is chosen, what can be followed
  Colour good;
  Colour warning;
  Colour bad;
  Colour faint;        ///< leading zeros, a control that takes nothing: there, but not to be read
  Colour onSelection;  ///< text and values on `selection`
  // Lines.
  Colour line;   ///< edges, between rows and groups
  Colour grid;   ///< behind traces
  Colour focus;  ///< frame of what has the keyboard
  // The meter.
  struct Bar {
    Colour empty;  ///< segments that the level does not reach
    Colour level;  ///< up to S9
    Colour over;   ///< above S9
    Colour peak;
    Colour mean;
    Colour squelch;
  } bar;
  /// Lines that lie over each other: they differ in lightness or hue, and always in their dashes.
  std::array<Colour, 8> traces;
};

/// Lengths of the dashes and gaps of each trace, in 96ths of an inch, in turn; 0 ends them, none is
/// a line without gaps.
inline constexpr std::array<std::array<std::uint8_t, 6>, 8> kTraceDashes{{
    {},
    {9, 4},
    {2, 3},
    {9, 3, 2, 3},
    {5, 3},
    {16, 5},
    {9, 3, 2, 3, 2, 3},
    {3, 6},
}};

/// All that the program draws itself takes its colours from here.
struct Palette {
  Colours windows;
  /// Inside the black panel, which stays dark in the light set too.
  Colours panel;
  bool dark = false;  ///< light letters on dark windows: the system's caption is to be dark as well
  bool night = false;
  bool contrast = false;  ///< the system's own colours, with no meaning besides theirs

  /// How a colour that a control was given is shown. Numbers keep their meaning by day; at night
  /// they become the tone of red that says the same. The system's colours become the table's.
  /// `set` is the one of the two that it lies among.
  Colour ink(Colour given, const Colours& set) const;
  Colour ground(Colour given, const Colours& set) const;
  /// Letters that can be read on a ground that `ground` answered; both are numbers.
  Colour lettersOn(Colour ground) const;
};

/// How the computer is set up.
struct SystemLook {
  bool contrast = false;  ///< high contrast is asked for; it stands before every choice
  bool dark = false;      ///< programs are to be dark
};

/// The set of colours to draw with; the same object for the same set, for as long as the program.
const Palette& paletteFor(ColourChoice choice, SystemLook system);

/// How much lighter one colour is than another, 1 to 21, as the eye sees it. Both are numbers, none
/// is the system's.
double contrast(Colour a, Colour b);

/// A text and a ground that it may stand on.
struct TextPair {
  Colour Colours::*text;
  Colour Colours::*ground;
};
std::span<const TextPair> textPairs();

}  // namespace kelvane
