# orbel_layer(NAME folder [TARGET name] [HEADERS h...] [SOURCES s...] [LINKS target...] [FLAGS target])
#
# Declares one layer of the architecture as target orbel_<name> with the alias Orbel::<name>
# (name defaults to the folder). Headers are included as "folder/Header.h", but only by a target
# that links the layer: each layer has an include directory of its own, made of forwarding headers
# in the build tree. An include against the direction of the layers thus fails to compile.
#
# FLAGS is the flag target that the layer's sources are compiled with, orbel_plugin_flags unless
# another is named. A layer without sources is an INTERFACE library.
function(orbel_layer folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TARGET;FLAGS" "HEADERS;SOURCES;LINKS")
    if(NOT arg_TARGET)
        set(arg_TARGET ${folder})
    endif()
    if(NOT arg_FLAGS)
        set(arg_FLAGS orbel_plugin_flags)
    endif()
    set(target orbel_${arg_TARGET})
    set(include_dir "${CMAKE_BINARY_DIR}/layers/${arg_TARGET}")

    foreach(header IN LISTS arg_HEADERS)
        if(NOT EXISTS "${CMAKE_SOURCE_DIR}/${folder}/${header}")
            message(FATAL_ERROR "${folder}/${header} does not exist")
        endif()
        file(CONFIGURE OUTPUT "${include_dir}/${folder}/${header}"
             CONTENT "#include \"${CMAKE_SOURCE_DIR}/${folder}/${header}\"\n")
    endforeach()

    if(arg_SOURCES)
        add_library(${target} STATIC ${arg_SOURCES})
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
        target_include_directories(${target} PUBLIC "${include_dir}")
        target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE ${arg_FLAGS})
    else()
        add_library(${target} INTERFACE)
        target_include_directories(${target} INTERFACE "${include_dir}")
        target_link_libraries(${target} INTERFACE ${arg_LINKS})
    endif()
    add_library(Orbel::${arg_TARGET} ALIAS ${target})
endfunction()
