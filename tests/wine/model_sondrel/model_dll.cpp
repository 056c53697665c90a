#include "tests/wine/stand_in_dll.h"

#include "tests/wine/model_sondrel/model_object.h"

STAND_IN_SONDREL(kelvane::test::ModelObject)
