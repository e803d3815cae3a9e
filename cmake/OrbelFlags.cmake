# SPDX-License-Identifier: Apache-2.0
# Compiler settings shared by every target.
#
# orbel_flags          warnings and sanitizers, for all code
# orbel_plugin_flags   what the plug-in's own code is compiled with, on top of the above
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

option(ORBEL_WARNINGS_AS_ERRORS "Stop the build at any compiler warning" OFF)
set(ORBEL_X86_64_LEVEL "v3" CACHE STRING
    "x86-64 micro-architecture level of the plug-in: v3 (AVX2, what the host application needs) or empty for the baseline")
set(ORBEL_SANITIZE "" CACHE STRING "Sanitizers for every target, such as address,undefined or thread")

# Adds `flag` to `target` for everything that links it, if the compiler knows the flag.
function(orbel_try_flag target flag)
    string(MAKE_C_IDENTIFIER "ORBEL_HAS_${flag}" known)
    check_cxx_compiler_flag("${flag}" ${known})
    if(${known})
        target_compile_options(${target} INTERFACE "${flag}")
    endif()
endfunction()

add_library(orbel_flags INTERFACE)
target_compile_features(orbel_flags INTERFACE cxx_std_20)
if(MSVC)
    target_compile_options(orbel_flags INTERFACE /W4 /permissive- /EHsc /utf-8 /bigobj)
else()
    foreach(flag -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor)
        orbel_try_flag(orbel_flags ${flag})
    endforeach()
endif()

# Assertions are part of the behaviour: NDEBUG is never defined, whatever the build type and
# external flags say. MSVC warns of an option that cancels another, so there the option is removed,
# in the scope of this project.
if(MSVC)
    foreach(type RELEASE RELWITHDEBINFO MINSIZEREL)
        string(REGEX REPLACE "[-/]DNDEBUG" "" CMAKE_CXX_FLAGS_${type} "${CMAKE_CXX_FLAGS_${type}}")
    endforeach()
else()
    target_compile_options(orbel_flags INTERFACE -UNDEBUG)
endif()

if(ORBEL_WARNINGS_AS_ERRORS)
    target_compile_options(orbel_flags INTERFACE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
endif()
if(ORBEL_SANITIZE)
    target_compile_options(orbel_flags INTERFACE
        -fsanitize=${ORBEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(orbel_flags INTERFACE -fsanitize=${ORBEL_SANITIZE})
endif()

# A Windows file links its run-time libraries statically, since no compiler's libraries are
# installed with it.
if(MSVC)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
elseif(WIN32)
    check_linker_flag(CXX -static ORBEL_LINKER_HAS_STATIC)
    if(ORBEL_LINKER_HAS_STATIC)
        target_link_options(orbel_flags INTERFACE -static)
    endif()
endif()

add_library(orbel_plugin_flags INTERFACE)
target_link_libraries(orbel_plugin_flags INTERFACE orbel_flags)
if(MSVC)
    # From Visual Studio 2022 on this contracts nothing, and a DLL exports only what is declared so:
    # that covers the purpose of the flags below.
    target_compile_options(orbel_plugin_flags INTERFACE /fp:precise)
else()
    # A fused multiply-add rounds once where two operations round twice. Without it every lane,
    # every lane width and both processors give the same bits.
    orbel_try_flag(orbel_plugin_flags -ffp-contract=off)
    # Nothing reads errno after a mathematical function; without it sqrt and floor are inline.
    orbel_try_flag(orbel_plugin_flags -fno-math-errno)
    # Nothing reads the exception flags of the processor either; with them, g++ doesn't turn a choice
    # between two computed values into a selection, and leaves such loops scalar.
    orbel_try_flag(orbel_plugin_flags -fno-trapping-math)
    orbel_try_flag(orbel_plugin_flags -fvisibility=hidden)
    orbel_try_flag(orbel_plugin_flags -fvisibility-inlines-hidden)
endif()

# The CMake name of the target processor differs by platform; the compiler's macro does not. A
# universal build has two processors, and each option says which one it is for.
set(ORBEL_ONLY_X86_64 "")
if("x86_64" IN_LIST CMAKE_OSX_ARCHITECTURES)
    set(ORBEL_TARGETS_X86_64 TRUE)
    set(ORBEL_ONLY_X86_64 "-Xarch_x86_64 ")
else()
    check_cxx_source_compiles("
        #if !defined(__x86_64__) && !defined(_M_X64)
        #error another processor
        #endif
        int main() {}" ORBEL_TARGETS_X86_64)
endif()

set(ORBEL_HAS_LEVEL FALSE)
if(ORBEL_TARGETS_X86_64 AND ORBEL_X86_64_LEVEL)
    set(ORBEL_HAS_LEVEL TRUE)
    if(MSVC)
        set(level_options /arch:AVX2)
    else()
        # g++ 12.2 fuses alternating sums and differences of products (vfmaddsub) whatever the
        # contraction setting says; without the instructions it can't.
        set(level_options -march=x86-64-${ORBEL_X86_64_LEVEL} -mno-fma)
    endif()
    list(TRANSFORM level_options PREPEND "${ORBEL_ONLY_X86_64}")

    list(JOIN level_options " " CMAKE_REQUIRED_FLAGS)
    check_cxx_source_compiles("int main() {}" ORBEL_COMPILER_KNOWS_${ORBEL_X86_64_LEVEL})
    unset(CMAKE_REQUIRED_FLAGS)
    if(NOT ORBEL_COMPILER_KNOWS_${ORBEL_X86_64_LEVEL})
        message(FATAL_ERROR "the compiler does not know ${level_options}: "
            "take a newer one, or leave ORBEL_X86_64_LEVEL empty")
    endif()
    list(TRANSFORM level_options PREPEND "SHELL:")
    target_compile_options(orbel_plugin_flags INTERFACE ${level_options})
endif()

# Windows aligns a stack to 16 bytes, but g++ moves 32-byte vectors there as if it were 32, so the
# assembler has to write unaligned moves. MSVC and clang align such a frame by themselves.
if(WIN32 AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND ORBEL_HAS_LEVEL)
    check_cxx_compiler_flag(-Wa,-muse-unaligned-vector-move ORBEL_ASSEMBLER_UNALIGNS_MOVES)
    if(NOT ORBEL_ASSEMBLER_UNALIGNS_MOVES)
        message(FATAL_ERROR "the assembler does not know -muse-unaligned-vector-move: "
            "take binutils 2.38 or newer, or leave ORBEL_X86_64_LEVEL empty")
    endif()
    target_compile_options(orbel_plugin_flags INTERFACE -Wa,-muse-unaligned-vector-move)
endif()
