# Installation: library, headers, program, pkg-config file and CMake package.
include(CMakePackageConfigHelpers)

install(TARGETS zrschema zryang EXPORT zrschemaTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/zrschema include/zryang DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/zrschema/version.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zrschema)
if(ZR_BUILD_TOOL)
    install(TARGETS zrschema_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# The prefix is known only when it comes to installing, so the file tells it from its own place.
file(RELATIVE_PATH zr_prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/zrschema.pc.in zrschema.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zrschema.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(zr_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zrschema)
write_basic_package_version_file(zrschemaConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT zrschemaTargets NAMESPACE zrschema:: FILE zrschemaConfig.cmake DESTINATION ${zr_package_dir})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zrschemaConfigVersion.cmake DESTINATION ${zr_package_dir})
