#pragma once

#include <memory>

#include "components/sondrel/radios/own_server.h"
#include "components/sondrel/radios/radio_setup.h"
#include "components/sondrel/receiver_entry.h"

namespace kelvane::sondrel {

/// The kind "radio": a radio on a port of this computer or in the network, whose server is found,
/// started and ended here.
const ReceiverKind& radioKind();

/// The server of such a radio.
std::shared_ptr<OwnServer> serverOf(const RadioSetup& setup);

/// What a section of this kind says; keys that cannot be read have their standards.
RadioSetup setupOf(const ReceiverEntry& entry);

}  // namespace kelvane::sondrel
