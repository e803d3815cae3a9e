# SPDX-License-Identifier: Apache-2.0
# clang++: the one that the environment variable ORBEL_CLANG names, else version 16, with which the
# code is checked, else whichever is installed.
if(DEFINED ENV{ORBEL_CLANG})
    set(names "$ENV{ORBEL_CLANG}")
else()
    set(names clang++-16 clang++ clang++-21 clang++-20 clang++-19 clang++-18 clang++-17 clang++-15)
endif()
find_program(ORBEL_CLANG NAMES ${names} REQUIRED)
set(CMAKE_CXX_COMPILER "${ORBEL_CLANG}")
