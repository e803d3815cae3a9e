# SPDX-License-Identifier: Apache-2.0
# What is installed, in two components, and the archives that CPack makes of the first.
#
# package       on Windows and macOS the file to be copied to the application's folder, elsewhere the
#               tool with its bundle; the notes on installation and the licences
# development   the host as a library with its headers, for find_package(Orbel)
include(CMakePackageConfigHelpers)

if(APPLE)
    set(system macos)
    set(notes_folder .)
    set(bundle_file Orbel.plugin/Contents/MacOS/Orbel)
    install(DIRECTORY "${ORBEL_MACOS_BUNDLE}" DESTINATION . USE_SOURCE_PERMISSIONS
        COMPONENT package)
elseif(WIN32)
    set(system windows-x86_64)
    set(notes_folder .)
    set(bundle_file Orbel.aex)
    install(TARGETS Orbel LIBRARY DESTINATION . COMPONENT package)
else()
    string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" system)
    set(notes_folder "${CMAKE_INSTALL_DOCDIR}")
    set(bundle_folder "${CMAKE_INSTALL_LIBDIR}/orbel")
    set(bundle_file "${bundle_folder}/Orbel.so")
    install(TARGETS Orbel LIBRARY DESTINATION "${bundle_folder}" COMPONENT package)
    if(TARGET orbel)
        install(TARGETS orbel RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT package)
    endif()
    if(TARGET orbel_pages)
        install(DIRECTORY "${ORBEL_PAGES}/man1" DESTINATION "${CMAKE_INSTALL_MANDIR}"
            COMPONENT package)
        # Where the three shells look, below each prefix that they know.
        install(FILES "${ORBEL_PAGES}/orbel.bash" RENAME orbel
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT package)
        install(FILES "${ORBEL_PAGES}/_orbel"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT package)
        install(FILES "${ORBEL_PAGES}/orbel.fish"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT package)
    endif()
endif()
function(orbel_install_note file name)
    install(FILES "${PROJECT_SOURCE_DIR}/${file}"
        DESTINATION "${notes_folder}" RENAME "${name}" COMPONENT package)
endfunction()
orbel_install_note(docs/install.md INSTALL.txt)
orbel_install_note(LICENSE LICENSE.txt)
orbel_install_note(NOTICE NOTICE.txt)
orbel_install_note(docs/third-party.md THIRD-PARTY.txt)

# Installs the headers of a layer and adds them to the include path of programs that link it.
function(orbel_install_headers layer)
    set(include_dir "${CMAKE_INSTALL_INCLUDEDIR}/orbel")
    get_target_property(headers orbel_${layer} ORBEL_HEADERS)
    foreach(header IN LISTS headers)
        cmake_path(GET header PARENT_PATH subfolder)
        install(FILES "${PROJECT_SOURCE_DIR}/${layer}/${header}"
            DESTINATION "${include_dir}/${layer}/${subfolder}" COMPONENT development)
    endforeach()
    target_include_directories(orbel_${layer} INTERFACE "$<INSTALL_INTERFACE:${include_dir}>")
endfunction()

if(TARGET orbel_headless)
    set(config_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Orbel")
    foreach(layer platform headless)
        orbel_install_headers(${layer})
        set_target_properties(orbel_${layer} PROPERTIES EXPORT_NAME ${layer})
        install(TARGETS orbel_${layer} EXPORT OrbelTargets ARCHIVE COMPONENT development)
    endforeach()
    install(EXPORT OrbelTargets NAMESPACE Orbel:: DESTINATION "${config_folder}"
        COMPONENT development)

    configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/OrbelConfig.cmake.in"
        "${PROJECT_BINARY_DIR}/OrbelConfig.cmake"
        INSTALL_DESTINATION "${config_folder}" PATH_VARS bundle_file)
    write_basic_package_version_file("${PROJECT_BINARY_DIR}/OrbelConfigVersion.cmake"
        COMPATIBILITY SameMinorVersion)
    install(FILES
            "${PROJECT_BINARY_DIR}/OrbelConfig.cmake"
            "${PROJECT_BINARY_DIR}/OrbelConfigVersion.cmake"
        DESTINATION "${config_folder}" COMPONENT development)
endif()

if(APPLE OR WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR TGZ)
endif()
set(CPACK_PACKAGE_NAME Orbel)
set(CPACK_PACKAGE_VENDOR TARNWICK)
set(CPACK_PACKAGE_FILE_NAME "Orbel-${PROJECT_VERSION}-${system}")
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};package;/")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
