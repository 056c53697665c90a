set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KELVANE_TRIPLET x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
# Test programs are started through Wine; ./test sets the prefix and the display that they run in.
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
