#pragma once

#include <span>
#include <string>
#include <string_view>

#include "ui/control_ids.h"
#include "ui/main_view.h"

namespace kelvane {

/// What kind of control a row makes.
enum class Kind {
  Tabs,    ///< tab strip
  Panel,   ///< black panel behind other controls
  Digit,   ///< one large character that can be selected and typed over
  Keys,    ///< invisible keyboard sink
  Text,    ///< text that a click does nothing to
  Label,   ///< text that acts on a click
  Lock,    ///< drawn padlock, closed for element 0 and open for element 1
  Lamp,    ///< drawn lamp in its background colour
  Toggle,  ///< check box drawn as a push button: it stays down until it is pressed again
  Button,  ///< push button
  Said,    ///< text that is on no screen, said by screen readers when it changes
};

enum class Font { Small, Normal, Bold, Digits, Status, Scale };
enum class Align { Centre, Left, Right };

/// Place in the window's design, in 96ths of an inch from its top left corner.
struct Place {
  int left, top, width, height;
};

/// One control, or an array of equal ones in a row.
struct ControlRow {
  int id;                 ///< of the first element; the others follow
  std::string_view name;  ///< the control's name
  Control& (*of)(MainView&, int element);
  Kind kind;
  Font font;
  Align align;
  Place place;  ///< of the first element
  /// Accessible name; one for each element of an array where "|" parts several, else its elements
  /// add their number. Empty: the text alone is the name.
  std::string_view speak;
  int count = 1;  ///< elements
  int step = 0;   ///< from one element's left edge to the next
};

/// A text engraved on the panel, in the panel's own coordinates.
struct Engraving {
  std::string_view text;
  Place place;
};
std::span<const Engraving> engravings();
/// The points that part the digits into groups of three, in the panel's own coordinates.
std::span<const Place> groupPoints();

/// Width of a control that takes the room of the hidden ones to its right, 96ths of an inch.
int widthToTheRight(MainView& view, int control);

/// What a screen reader says of a control: what it is, and what it shows.
std::string spokenWords(const ControlRow& row, int element, const Control& control);

/// Whether a row's captions mark letters for Alt: those of the panel's own buttons do. The words on
/// the receiver's settings are the receiver's.
bool marksLetters(const ControlRow& row);

/// The main window's controls, in tab order. Elements of an array that differ in kind have rows of
/// their own.
std::span<const ControlRow> mainControls();
/// What a control of the table shows; null for an id that is none of its.
Control* controlOf(MainView& view, int id);

/// The window's design size.
inline constexpr int kMainWidth = 720;
inline constexpr int kMainHeight = 290;
/// Extra space in front of every third digit but the first.
inline constexpr int kDigitGroupGap = 14;

}  // namespace kelvane
