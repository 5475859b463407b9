# Installation: libraries, headers, program, and for each library a pkg-config file and a CMake
# package.
include(CMakePackageConfigHelpers)

# The prefix is known only when it comes to installing, so the pkg-config files tell it from their own
# place.
file(RELATIVE_PATH zr_prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)

# The libraries that a program needs along with it follow the description.
function(zr_install_library name description)
    string(REPLACE ";" " " requires "${ARGN}")
    set(dependencies "")
    foreach(library ${ARGN})
        string(APPEND dependencies "find_dependency(${library})\n")
    endforeach()
    configure_file(cmake/library.cmake.in ${name}Config.cmake @ONLY)
    install(TARGETS ${name} EXPORT ${name}Targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(DIRECTORY include/${name} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
    configure_file(cmake/library.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    write_basic_package_version_file(${name}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(EXPORT ${name}Targets NAMESPACE ${name}:: DESTINATION ${package_dir})
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}Config.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/${name}ConfigVersion.cmake DESTINATION ${package_dir})
endfunction()

zr_install_library(zrschema "A YANG schema engine")
zr_install_library(zryang "Checks YANG sources and prepares them for libzrschema")
zr_install_library(zrdata "Checks whole data by RFC 7950" zrschema)
zr_install_library(zrpatterns "Matches patterns in linear time for libzrschema")
install(FILES ${PROJECT_BINARY_DIR}/include/zrschema/version.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zrschema)
if(ZR_BUILD_TOOL)
    install(TARGETS zrschema_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
