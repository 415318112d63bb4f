# The processor of a 32-bit television.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
set(triplet arm-linux-gnueabihf)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
