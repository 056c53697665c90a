#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// The name of an instance that was given none.
inline constexpr std::string_view kDefaultInstance = "Kelvane";

/// An instance's name as the name of its settings key: a backslash becomes "_", and a name that is
/// too long for a key is cut and told apart from others by a number made of the whole of it. Both
/// the panel and the components use it, so that one instance means the same everywhere.
std::string safeInstanceName(std::string_view instance);

/// A text as the name of one file or folder: as above, and what no file name may hold becomes "_"
/// too. Never empty, never a device's name, at most 100 characters.
std::string safeFileName(std::string_view text);

}  // namespace kelvane
