# SPDX-License-Identifier: Apache-2.0
# orbel_layer(folder [TARGET name] [HEADERS h...] [INTERNAL_HEADERS h...] [SOURCES s...]
#             [LINKS target...] [FLAGS target])
#
# Declares one layer of the architecture as target orbel_<name> with the alias Orbel::<name>
# (name defaults to the folder). Headers are included as "folder/Header.h", but only by a target
# that links the layer: each layer has an include directory of its own, made of forwarding headers
# in the build tree. An include against the direction of the layers thus fails to compile.
#
# INTERNAL_HEADERS are for the layer's own sources, and for its tests through the additional target
# Orbel::<name>_internals.
#
# FLAGS is the flag target that the layer's sources are compiled with, orbel_plugin_flags unless
# another is named. A layer without sources is an INTERFACE library.
#
# The target orbel_<name>_headers has HEADERS as a header set: with CMAKE_VERIFY_INTERFACE_HEADER_SETS
# the target all_verify_interface_header_sets compiles each header on its own.
function(orbel_layer folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TARGET;FLAGS"
        "HEADERS;INTERNAL_HEADERS;SOURCES;LINKS")
    if(NOT arg_TARGET)
        set(arg_TARGET ${folder})
    endif()
    if(NOT arg_FLAGS)
        set(arg_FLAGS orbel_plugin_flags)
    endif()
    set(target orbel_${arg_TARGET})
    set(include_dir "${PROJECT_BINARY_DIR}/layers/${arg_TARGET}")
    set(internal_dir "${PROJECT_BINARY_DIR}/layers/${arg_TARGET}-internals")

    orbel_forward_headers("${folder}" "${include_dir}" ${arg_HEADERS})
    orbel_forward_headers("${folder}" "${internal_dir}" ${arg_INTERNAL_HEADERS})

    # Build flags and folders of the build tree stay out of what is exported.
    if(arg_SOURCES)
        set(scope PUBLIC)
        add_library(${target} STATIC ${arg_SOURCES})
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
        target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:${arg_FLAGS}>)
    else()
        set(scope INTERFACE)
        add_library(${target} INTERFACE)
    endif()
    target_compile_features(${target} ${scope} cxx_std_20)
    target_include_directories(${target} ${scope} "$<BUILD_INTERFACE:${include_dir}>")
    target_link_libraries(${target} ${scope} ${arg_LINKS})
    set_target_properties(${target} PROPERTIES ORBEL_HEADERS "${arg_HEADERS}")
    add_library(Orbel::${arg_TARGET} ALIAS ${target})

    list(TRANSFORM arg_HEADERS PREPEND "${include_dir}/${folder}/" OUTPUT_VARIABLE headers)
    add_library(${target}_headers INTERFACE)
    target_sources(${target}_headers INTERFACE
        FILE_SET HEADERS BASE_DIRS "${include_dir}" FILES ${headers})
    target_link_libraries(${target}_headers INTERFACE ${target} ${arg_FLAGS})

    if(arg_INTERNAL_HEADERS)
        target_include_directories(${target} PRIVATE "${internal_dir}")
        add_library(${target}_internals INTERFACE)
        target_include_directories(${target}_internals INTERFACE "${internal_dir}")
        target_link_libraries(${target}_internals INTERFACE ${target})
        add_library(Orbel::${arg_TARGET}_internals ALIAS ${target}_internals)
    endif()
endfunction()

# orbel_forward_headers(folder include_dir header...)
# Writes headers into `include_dir` that include those of `folder`.
function(orbel_forward_headers folder include_dir)
    foreach(header IN LISTS ARGN)
        if(NOT EXISTS "${PROJECT_SOURCE_DIR}/${folder}/${header}")
            message(FATAL_ERROR "${folder}/${header} does not exist")
        endif()
        file(CONFIGURE OUTPUT "${include_dir}/${folder}/${header}"
             CONTENT "#include \"${PROJECT_SOURCE_DIR}/${folder}/${header}\"\n")
    endforeach()
endfunction()
