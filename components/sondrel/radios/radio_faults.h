#pragma once

#include <string>
#include <string_view>

#include "components/sondrel/radios/radio_setup.h"

namespace kelvane::sondrel {

/// Why a radio's server cannot reach its radio, for the operator, by what the server wrote last;
/// empty where that says nothing.
std::string radioFault(const RadioSetup& setup, std::string_view written);

// The same by what else is known.
std::string portMissingWords(const RadioSetup& setup);
std::string radioSilentWords(const RadioSetup& setup);
std::string radioGoneWords(const RadioSetup& setup);

}  // namespace kelvane::sondrel
