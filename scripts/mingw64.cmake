set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KELVANE_TRIPLET x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
# Test programs are started through Wine, on one of the desktops that ./test starts.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/on-desktop wine)
