#include "tests/wine/stand_in_dll.h"

#include "benchmarks/wine/timing_sondrel/timing_object.h"

STAND_IN_SONDREL(kelvane::bench::TimingObject)
