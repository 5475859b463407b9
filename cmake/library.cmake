# SPDX-License-Identifier: Apache-2.0
# How the libraries are made: each of objects that unit tests link as well, shared, or static where
# BUILD_SHARED_LIBS is off. Its folder's exports.map names what is exported.
function(zr_add_library name)
    cmake_parse_arguments(zr "" "" "OBJECTS;PUBLIC;PRIVATE" ${ARGN})
    list(TRANSFORM zr_OBJECTS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
    add_library(${name} ${zr_OBJECTS})
    add_library(${name}::${name} ALIAS ${name})
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${name} PUBLIC ${zr_PUBLIC} PRIVATE ${zr_PRIVATE})
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR} LINKER_LANGUAGE CXX)
    if(BUILD_SHARED_LIBS)
        set(exports ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
        # A library calls its own functions directly instead of looking for them in the whole process.
        target_link_options(${name} PRIVATE -Wl,--as-needed -Wl,-Bsymbolic-functions
            -Wl,--version-script=${exports})
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${exports})
    endif()
endfunction()
