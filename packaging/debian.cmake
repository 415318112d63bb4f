# The Debian packages: the library for a device, its development files, stand-ins for the device's
# services, and settings applications for a terminal and a screen. Their versions have no Debian
# revision, because this project builds the packages itself.

set(MORVITH_PACKAGE_CONTACT "nobody <nobody@localhost>" CACHE STRING
  "Maintainer field of the packages, which Debian's format requires")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "${MORVITH_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_SOURCE_DATE ${MORVITH_SOURCE_DATE})
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/rebuild_packages.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)  # dependencies require the same version
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
# No installed package contains the platform's libraries, so dpkg-shlibdeps needs their folders.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${MORVITH_PLATFORM_LIBRARY_DIRECTORIES})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libmorvith-dataprovider)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
  "Keyboard settings for a television's settings menu\n\
The data provider that the settings application loads as a plug-in, with its\n\
keyboard configuration, message catalogues and help images.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libmorvith-dataprovider-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_DEBIAN_DEV_DESCRIPTION
  "Keyboard settings for a television's settings menu, development files\n\
The header of the interface between the settings application and the data\n\
provider, and a pkg-config file with the compiler flags and the path of the\n\
provider.")

if(MORVITH_PLATFORM STREQUAL "stand-in")
  list(APPEND CPACK_COMPONENTS_ALL stand_ins host)
  set(CPACK_COMPONENT_RUNTIME_DEPENDS stand_ins)

  set(CPACK_DEBIAN_STAND_INS_PACKAGE_NAME morvith-platform-stand-ins)
  set(CPACK_DEBIAN_STAND_INS_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_LIST_DIR}/stand_ins/shlibs ${CMAKE_CURRENT_LIST_DIR}/stand_ins/triggers)
  set(CPACK_DEBIAN_STAND_INS_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_DEBIAN_STAND_INS_DESCRIPTION
    "Stand-ins for a television's services, with device profiles\n\
The device's registry, system information, log and root filesystem on a machine\n\
that is not a television, and profiles of a few devices.")

  set(CPACK_DEBIAN_HOST_PACKAGE_NAME morvith-menu-host)
  set(CPACK_DEBIAN_HOST_PACKAGE_SECTION utils)
  set(CPACK_COMPONENT_HOST_DEPENDS stand_ins)
  set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS libmorvith-dataprovider)
  set(CPACK_DEBIAN_HOST_DESCRIPTION
    "Menu host for data providers, without a television\n\
The menu_host command, which shows and sets the keyboard page in a terminal,\n\
and finds problems that a viewer would see.")
endif()

if(TARGET menu_screen)
  list(APPEND CPACK_COMPONENTS_ALL screen)
  set(CPACK_COMPONENT_SCREEN_DEPENDS stand_ins)
  set(CPACK_DEBIAN_SCREEN_PACKAGE_NAME morvith-menu-screen)
  set(CPACK_DEBIAN_SCREEN_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_SCREEN_PACKAGE_DEPENDS "fonts-noto-core, fonts-wqy-microhei")
  set(CPACK_DEBIAN_SCREEN_PACKAGE_RECOMMENDS libmorvith-dataprovider)
  set(CPACK_DEBIAN_SCREEN_DESCRIPTION
    "Keyboard settings page on a screen, without a television\n\
The menu_screen command, which shows the page as a viewer sees it, and measures\n\
each of its texts in each language.")
endif()

include(CPack)
