#pragma once

#include <optional>
#include <string>
#include <vector>

#include "components/sondrel/rigctld/rigctld_capabilities.h"

namespace kelvane::sondrel {

/// Reads a server's description of its radio (the reply to dump_state) into capabilities. Whatever
/// is missing or makes no sense is left out; what the description claims to be readable is not
/// taken from it, because descriptions are wrong about that both ways. None where the text is no
/// description at all.
std::optional<RigctldCapabilities> readDescription(const std::vector<std::string>& lines);

/// Maker and model out of the long description (dump_caps); empty where it names none.
std::string modelIn(const std::vector<std::string>& lines);

/// The names in a server's list of modes ("AM CW USB ").
std::vector<std::string> modesIn(const std::vector<std::string>& lines);

}  // namespace kelvane::sondrel
