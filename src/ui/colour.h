#pragma once

#include <cstdint>

namespace kelvane {

/// A colour as the screen wants it: red in the low byte, or with the high bit set one of the
/// system's own colours, looked up when it is painted.
struct Colour {
  std::uint32_t value = 0;

  static constexpr Colour rgb(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return {static_cast<std::uint32_t>(red | green << 8 | blue << 16)};
  }
  static constexpr Colour system(std::uint8_t index) { return {0x80000000u | index}; }

  bool isSystem() const { return (value & 0x80000000u) != 0; }
  bool operator==(const Colour&) const = default;
};

inline constexpr Colour kBlack = Colour::rgb(0, 0, 0);
inline constexpr Colour kGreen = Colour::rgb(0, 255, 0);
inline constexpr Colour kRed = Colour::rgb(255, 0, 0);
/// What lies on the dark ground and is neither a reading nor a warning.
inline constexpr Colour kQuietText = Colour::rgb(200, 208, 216);
inline constexpr Colour kMenuColour = Colour::system(4);
inline constexpr Colour kWindowText = Colour::system(8);
inline constexpr Colour kButtonFace = Colour::system(15);

}  // namespace kelvane
