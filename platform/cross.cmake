# Cross-compiles with Debian's cross compiler and packages. An emulator runs the programs.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${triplet}/pkgconfig:/usr/share/pkgconfig)
set(CMAKE_INSTALL_LIBDIR lib/${triplet})
