#include "contract/win32/component_files.h"

#include "contract/Ambrel.h"
#include "contract/Sondrel.h"

namespace kelvane::com {

OpenedComponent openReceiverComponent() { return openComponent(L"Sondrel.dll", __uuidof(Sondrel)); }

OpenedComponent openFrequencyComponent() { return openComponent(L"Ambrel.dll", __uuidof(Ambrel)); }

}  // namespace kelvane::com
