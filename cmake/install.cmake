# SPDX-License-Identifier: Apache-2.0
# Installation: libraries, headers, program with its completion in shells, man pages, documents, and
# for each library a pkg-config file and a CMake package. Each library is a component of its own, and
# the package zrschema finds the others as its components:
# find_package(zrschema COMPONENTS yang data patterns). The component python is the Python package
# (python/CMakeLists.txt).
include(CMakePackageConfigHelpers)
set(ZR_HOMEPAGE_URL "" CACHE STRING "where the project is at home, for pkg-config files")
set(ZR_BASH_COMPLETION_DIR ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    CACHE STRING "folder of completions for bash")
set(ZR_ZSH_COMPLETION_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
    CACHE STRING "folder of completions for zsh; that of Debian's packages is share/zsh/vendor-completions")
set(ZR_FISH_COMPLETION_DIR ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
    CACHE STRING "folder of completions for fish")

# Folders as pkg-config files tell them: from their own place, since the prefix is known only when it
# comes to installing; a folder that was given as an absolute path stays one.
cmake_path(IS_ABSOLUTE CMAKE_INSTALL_LIBDIR zr_is_fixed)
if(zr_is_fixed)
    set(zr_pc_prefix ${CMAKE_INSTALL_PREFIX})
else()
    file(RELATIVE_PATH zr_pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    set(zr_pc_prefix "\${pcfiledir}/${zr_pc_prefix}")
endif()
foreach(folder LIBDIR INCLUDEDIR)
    set(zr_pc_${folder} ${CMAKE_INSTALL_${folder}})
    cmake_path(IS_ABSOLUTE zr_pc_${folder} zr_is_fixed)
    if(NOT zr_is_fixed)
        string(PREPEND zr_pc_${folder} "\${prefix}/")
    endif()
endforeach()

# REQUIRES are libraries of this project whose headers it includes. PACKAGES (CMake's), MODULES
# (pkg-config's) and LIBRARIES are what a static library is linked with.
function(zr_install_library name component description)
    cmake_parse_arguments(zr "" "" "REQUIRES;PACKAGES;MODULES;LIBRARIES" ${ARGN})
    list(TRANSFORM zr_LIBRARIES PREPEND "-l")
    # A shared library brings them along by itself; where there is a static one alone, every program
    # is linked with them.
    set(kind public)
    if(BUILD_SHARED_LIBS)
        set(kind private)
    endif()
    set(requires_public ${zr_REQUIRES})
    list(APPEND requires_${kind} ${zr_MODULES})
    set(libs_public -l${name})
    list(APPEND libs_${kind} ${zr_LIBRARIES})
    foreach(list requires_public requires_private libs_public libs_private)
        list(JOIN ${list} " " ${list})
    endforeach()
    set(url "")
    if(ZR_HOMEPAGE_URL)
        set(url "URL: ${ZR_HOMEPAGE_URL}\n")
    endif()
    set(packages ${zr_REQUIRES})
    if(NOT BUILD_SHARED_LIBS)
        list(APPEND packages ${zr_PACKAGES})
    endif()
    list(TRANSFORM packages REPLACE "(.+)" "find_dependency(\\1)\n")
    list(JOIN packages "" dependencies)

    configure_file(cmake/library.cmake.in ${name}Config.cmake @ONLY)
    configure_file(cmake/library.pc.in ${name}.pc @ONLY)
    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    write_basic_package_version_file(${name}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(TARGETS ${name} EXPORT ${name}Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component})
    install(DIRECTORY include/${name} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT ${component}
        FILES_MATCHING PATTERN "*.h")
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT ${component})
    install(EXPORT ${name}Targets NAMESPACE ${name}:: DESTINATION ${package_dir}
        COMPONENT ${component})
    install(FILES ${PROJECT_BINARY_DIR}/${name}Config.cmake
        ${PROJECT_BINARY_DIR}/${name}ConfigVersion.cmake DESTINATION ${package_dir}
        COMPONENT ${component})
    if(ZR_BUILD_MAN)
        install(DIRECTORY ${ZR_MAN_DIR}/${name}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR}
            COMPONENT ${component})
    endif()
endfunction()

zr_install_library(zrschema schema "A YANG schema engine"
    PACKAGES LibXml2 Threads MODULES libxml-2.0 LIBRARIES pthread)
zr_install_library(zryang yang "Checks YANG sources and prepares them for libzrschema"
    PACKAGES LibXml2 MODULES libxml-2.0 LIBRARIES stdc++)
zr_install_library(zrdata data "Checks whole data by RFC 7950"
    REQUIRES zrschema PACKAGES LibXml2 MODULES libxml-2.0 LIBRARIES stdc++)
zr_install_library(zrpatterns patterns "Matches patterns in linear time for libzrschema"
    MODULES re2 LIBRARIES stdc++)
install(FILES ${PROJECT_BINARY_DIR}/include/zrschema/version.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zrschema COMPONENT schema)
if(ZR_BUILD_TOOL)
    install(TARGETS zrschema_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES packaging/completions/zrschema.bash RENAME zrschema
        DESTINATION ${ZR_BASH_COMPLETION_DIR} COMPONENT tool)
    install(FILES packaging/completions/_zrschema DESTINATION ${ZR_ZSH_COMPLETION_DIR} COMPONENT tool)
    install(FILES packaging/completions/zrschema.fish DESTINATION ${ZR_FISH_COMPLETION_DIR}
        COMPONENT tool)
    if(ZR_BUILD_MAN)
        install(DIRECTORY ${ZR_MAN_DIR}/tool/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT tool)
    endif()
endif()

# As they lie here, so that they find each other.
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc FILES_MATCHING PATTERN "*.md")
