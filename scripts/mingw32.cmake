# For components of other makers that exist in 32 bits alone: they need a panel of their own width.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(KELVANE_TRIPLET i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
