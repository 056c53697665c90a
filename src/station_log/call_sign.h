#pragma once

#include <string_view>

namespace kelvane {

/// The first word of an operator's comment that has the form of a call sign: an amateur's, or
/// letters with a number as fixed stations have; without marks behind it. Empty where there is
/// none.
std::string_view callInComment(std::string_view comment);

/// The same for a known station's name, where well-known call signs of letters alone count too.
std::string_view callInName(std::string_view name);

}  // namespace kelvane
