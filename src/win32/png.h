#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kelvane::win32 {

/// A picture as the bytes of a PNG file, made by the system's imaging component; `pixels` are rows
/// from top to bottom, each 0x00RRGGBB. Empty where the system cannot; `why` then says it.
std::string pngOf(std::span<const std::uint32_t> pixels, int width, int height, std::string& why);

}  // namespace kelvane::win32
