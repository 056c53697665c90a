#pragma once

#include "contract/win32/activation.h"

namespace kelvane::com {

/// The receiver component: Sondrel.dll beside the program, else as it is registered.
OpenedComponent openReceiverComponent();

/// The frequency component: Ambrel.dll beside the program, else as it is registered.
OpenedComponent openFrequencyComponent();

}  // namespace kelvane::com
