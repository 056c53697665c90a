#pragma once

#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"
#include "contract/win32/server/object_count.h"

namespace kelvane::com {

/// Makes an object with no reference yet; answers why there is none.
using MakeObject = HRESULT (*)(ObjectCount& count, ComPtr<IUnknown>& object);

/// What DllGetClassObject answers: the factory of the one class that a component's library has.
HRESULT getClassObject(REFCLSID asked, REFCLSID offered, ObjectCount& count, MakeObject make,
                       REFIID iid, void** object);

}  // namespace kelvane::com
