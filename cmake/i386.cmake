# 32-bit programs on a 64-bit Debian: the compiler is g++ with -m32 (g++-multilib); libxml2, RE2 and what
# they depend on are unpacked, not installed, into build/i386-sysroot, and the programs find them
# there at run time.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
# The programs run on this machine as they are: not a cross build as far as running goes.
set(CMAKE_CROSSCOMPILING_EMULATOR "")

set(zr_sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/i386-sysroot)
get_filename_component(zr_sysroot ${zr_sysroot} ABSOLUTE)
set(zr_sysroot_lib ${zr_sysroot}/usr/lib/i386-linux-gnu)

set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT "-m32")
set(CMAKE_CXX_FLAGS_INIT "-m32 -O1")
set(zr_link_flags "-L${zr_sysroot_lib} -Wl,-rpath-link,${zr_sysroot_lib}:${zr_sysroot}/lib/i386-linux-gnu")
# The old form of the run path also serves the libraries that libxml2 needs in turn.
set(zr_link_flags "${zr_link_flags} -Wl,--disable-new-dtags,-rpath,${zr_sysroot_lib}:${zr_sysroot}/lib/i386-linux-gnu")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${zr_link_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${zr_link_flags}")

set(LIBXML2_INCLUDE_DIR ${zr_sysroot}/usr/include/libxml2)
set(LIBXML2_LIBRARY ${zr_sysroot_lib}/libxml2.so)
set(LIBXML2_LIBRARIES ${LIBXML2_LIBRARY})
set(RE2_INCLUDE_DIR ${zr_sysroot}/usr/include)
set(RE2_LIBRARY ${zr_sysroot_lib}/libre2.so)
