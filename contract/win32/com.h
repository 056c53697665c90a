// The system's COM declarations, which stand on <windows.h> and do not include it themselves.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <ocidl.h>
#include <olectl.h>
