#pragma once

#include <string>
#include <vector>

#include "components/sondrel/sharing/shared_receiver.h"

namespace kelvane::sondrel {

/// The lines of "\dump_state", protocol version 1: what the receiver can do, for programs that ask
/// before anything else. Never fails, since a program that gets an error here gives up.
std::vector<std::string> dumpState(const SharedTraits& traits);

/// The lines of "\dump_caps" that programs look for.
std::vector<std::string> dumpCaps(const SharedTraits& traits);

/// The levels and functions that programs may ask for and set, by the protocol's names.
std::string levelList(const Capabilities& can);
std::string settableLevelList(const Capabilities& can);
std::string functionList(const Capabilities& can);

}  // namespace kelvane::sondrel
