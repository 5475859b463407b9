# SPDX-License-Identifier: Apache-2.0
# Programs for another machine on a 64-bit Debian; ZR_MACHINE names it, as the presets do. libxml2, RE2
# and what they depend on are unpacked, not installed, into build/MACHINE-sysroot, and the programs find
# them there at run time. g++-12-multilib makes and this machine runs 32-bit programs; for the others
# there are Debian's cross compilers, which bring their C and C++ libraries along, and qemu.
set(ZR_MACHINE "" CACHE STRING "the machine that programs are built for")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZR_MACHINE)

#   machine   processor  triplet
set(zr_machines
    "i386     i686       i386-linux-gnu"
    "aarch64  aarch64    aarch64-linux-gnu"
    "armhf    arm        arm-linux-gnueabihf"
    "s390x    s390x      s390x-linux-gnu")
list(FILTER zr_machines INCLUDE REGEX "^${ZR_MACHINE} ")
list(LENGTH zr_machines zr_found)
if(NOT zr_found EQUAL 1)
    message(FATAL_ERROR "ZR_MACHINE names no machine: \"${ZR_MACHINE}\"")
endif()
separate_arguments(zr_machine UNIX_COMMAND "${zr_machines}")
list(GET zr_machine 1 CMAKE_SYSTEM_PROCESSOR)
list(GET zr_machine 2 zr_triplet)
set(CMAKE_SYSTEM_NAME Linux)

if(ZR_MACHINE STREQUAL "i386")
    set(CMAKE_C_COMPILER gcc)
    set(CMAKE_CXX_COMPILER g++)
    # The kernel's headers, for which only g++-multilib has a link where -m32 looks.
    set(zr_kernel_headers "-idirafter /usr/include/x86_64-linux-gnu")
    set(CMAKE_C_FLAGS_INIT "-m32 ${zr_kernel_headers}")
    set(CMAKE_CXX_FLAGS_INIT "-m32 -O1 ${zr_kernel_headers}")
    set(CMAKE_CROSSCOMPILING_EMULATOR "")
else()
    set(CMAKE_C_COMPILER ${zr_triplet}-gcc)
    set(CMAKE_CXX_COMPILER ${zr_triplet}-g++)
    set(CMAKE_CXX_FLAGS_INIT "-Wno-psabi") # notes on what GCC 7 passed in other ways
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR}-static -L /usr/${zr_triplet}
        CACHE STRING "runs programs of that machine")
endif()

get_filename_component(zr_sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/${ZR_MACHINE}-sysroot ABSOLUTE)
set(zr_sysroot_lib ${zr_sysroot}/usr/lib/${zr_triplet})
set(zr_run_path ${zr_sysroot_lib}:${zr_sysroot}/lib/${zr_triplet})
# The old form of the run path also serves the libraries that these need in turn.
set(zr_link_flags "-L${zr_sysroot_lib} -Wl,-rpath-link,${zr_run_path} -Wl,--disable-new-dtags,-rpath,${zr_run_path}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${zr_link_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${zr_link_flags}")

set(LIBXML2_INCLUDE_DIR ${zr_sysroot}/usr/include/libxml2)
set(LIBXML2_LIBRARY ${zr_sysroot_lib}/libxml2.so)
set(LIBXML2_LIBRARIES ${LIBXML2_LIBRARY})
set(RE2_INCLUDE_DIR ${zr_sysroot}/usr/include)
set(RE2_LIBRARY ${zr_sysroot_lib}/libre2.so)
