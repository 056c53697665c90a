# The cross compiler for both widths; the file that includes this one has set the triplet.
set(CMAKE_SYSTEM_NAME Windows)
# The test framework is C and C++.
set(CMAKE_C_COMPILER ${KELVANE_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KELVANE_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${KELVANE_TRIPLET}-windres)
set(KELVANE_WIDL ${KELVANE_TRIPLET}-widl)
set(CMAKE_FIND_ROOT_PATH /usr/${KELVANE_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
