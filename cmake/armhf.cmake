# Toolchain for the rack's master: 32-bit ARM Linux with hardware floating point (armhf),
# built with Debian's cross compiler (g++-arm-linux-gnueabihf).
#
#   cmake -S . -B build-armhf -DCMAKE_TOOLCHAIN_FILE=cmake/armhf.cmake \
#         -DCAMBIOIP_ARMHF_SYSROOT=$PWD/build-armhf/sysroot -DBUILD_TESTING=OFF ...
#
# The target's files come from one of two trees:
#  - Debian's (the default, what make cross-armhf sets up): the C library and the C++ runtime
#    are the cross compiler's own (/usr/arm-linux-gnueabihf), and libxml2 with what it pulls in
#    (ICU, zlib, xz) are Debian's armhf packages unpacked into CAMBIOIP_ARMHF_SYSROOT by
#    cmake/sysroot-armhf.sh. That tree holds no C library, so it is searched beside the
#    compiler's rather than given as the compiler's --sysroot.
#  - A vendor SDK's: the master's whole root file system, C library included, given as
#    CMAKE_SYSROOT (and the SDK's compiler as CMAKE_CXX_COMPILER). It is then the only tree
#    searched.
# Either way find_package(LibXml2) and the static link's pkg-config read the target's files,
# never this machine's.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(CAMBIOIP_ARMHF_TRIPLET arm-linux-gnueabihf)
if(NOT CMAKE_CXX_COMPILER)
  set(CMAKE_CXX_COMPILER ${CAMBIOIP_ARMHF_TRIPLET}-g++)
endif()
if(NOT CMAKE_C_COMPILER)
  set(CMAKE_C_COMPILER ${CAMBIOIP_ARMHF_TRIPLET}-gcc)
endif()
# Debian's multiarch folders: <root>/usr/lib/arm-linux-gnueabihf.
set(CMAKE_LIBRARY_ARCHITECTURE ${CAMBIOIP_ARMHF_TRIPLET})

# The compiler checks of try_compile run in a project of their own and see only these.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CAMBIOIP_ARMHF_SYSROOT)

if(CMAKE_SYSROOT)
  set(cambioip_raices ${CMAKE_SYSROOT})
  set(cambioip_raiz_pkgconfig ${CMAKE_SYSROOT})
else()
  if(NOT CAMBIOIP_ARMHF_SYSROOT)
    set(CAMBIOIP_ARMHF_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build-armhf/sysroot)
  endif()
  get_filename_component(CAMBIOIP_ARMHF_SYSROOT ${CAMBIOIP_ARMHF_SYSROOT} ABSOLUTE)
  if(NOT EXISTS ${CAMBIOIP_ARMHF_SYSROOT}/usr/include/libxml2)
    message(FATAL_ERROR "No armhf libxml2 in ${CAMBIOIP_ARMHF_SYSROOT}: make cross-armhf fetches it "
                        "(cmake/sysroot-armhf.sh), or set CMAKE_SYSROOT to a vendor SDK's root file system")
  endif()
  set(cambioip_raices ${CAMBIOIP_ARMHF_SYSROOT} /usr/${CAMBIOIP_ARMHF_TRIPLET})
  set(cambioip_raiz_pkgconfig ${CAMBIOIP_ARMHF_SYSROOT})
  # The headers of the unpacked packages (libxml2's include ICU's unicode/ headers); the
  # compiler's own folder keeps the C library's.
  set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${CAMBIOIP_ARMHF_SYSROOT}/usr/include)
  # A shared libxml2 names its libraries (ICU, zlib, xz) by soname; the linker finds them in
  # the unpacked tree only through -rpath-link.
  set(cambioip_rpath_link
      "-Wl,-rpath-link,${CAMBIOIP_ARMHF_SYSROOT}/usr/lib/${CAMBIOIP_ARMHF_TRIPLET}"
      "-Wl,-rpath-link,${CAMBIOIP_ARMHF_SYSROOT}/lib/${CAMBIOIP_ARMHF_TRIPLET}")
  string(JOIN " " cambioip_rpath_link ${cambioip_rpath_link})
  set(CMAKE_EXE_LINKER_FLAGS_INIT "${cambioip_rpath_link}")
  set(CMAKE_SHARED_LINKER_FLAGS_INIT "${cambioip_rpath_link}")
endif()

# Programs of the build that run during it (genera_tablas writes www/js/tablas.js) run under
# emulation, with the target's C library.
find_program(CAMBIOIP_QEMU_ARM qemu-arm)
if(CAMBIOIP_QEMU_ARM)
  if(CMAKE_SYSROOT)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${CAMBIOIP_QEMU_ARM} -L ${CMAKE_SYSROOT})
  else()
    set(CMAKE_CROSSCOMPILING_EMULATOR ${CAMBIOIP_QEMU_ARM} -L /usr/${CAMBIOIP_ARMHF_TRIPLET})
  endif()
endif()

set(CMAKE_FIND_ROOT_PATH ${cambioip_raices})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config (FindLibXml2's hints, and the list of archives of CAMBIOIP_STATIC) reads the
# target's .pc files, its paths prefixed with the tree they are in.
set(ENV{PKG_CONFIG_LIBDIR}
    "${cambioip_raiz_pkgconfig}/usr/lib/${CAMBIOIP_ARMHF_TRIPLET}/pkgconfig:${cambioip_raiz_pkgconfig}/usr/lib/pkgconfig:${cambioip_raiz_pkgconfig}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${cambioip_raiz_pkgconfig}")
