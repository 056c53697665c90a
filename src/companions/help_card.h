#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// How the card writes the arrow keys.
enum class Arrows {
  Symbol,      ///< as characters of the font Symbol
  Characters,  ///< as arrows of the text's own font
  Words,       ///< as "Left", "Right", "Up" and "Down"
};

/// The card of keyboard commands as an RTF document, its text in this font.
std::string helpCard(std::string_view font, Arrows arrows);

}  // namespace kelvane
