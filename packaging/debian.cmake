# Two packages: what a device gets, and what stands in for a device on a developer's machine.

set(MORVITH_PACKAGE_CONTACT "nobody <nobody@localhost>" CACHE STRING
  "Maintainer field of the packages, which Debian's format demands")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "${MORVITH_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
# The platform's libraries, stand-ins or the SDK's, are in no package outside this build.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${MORVITH_PLATFORM_LIBRARY_DIRECTORIES})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libmorvith-dataprovider)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
  "Keyboard settings for a television's settings menu\n\
The data provider that the settings application loads as a plug-in, with its keyboard\n\
configuration, message catalogues and help images.")

if(MORVITH_PLATFORM STREQUAL "stand-in")
  list(APPEND CPACK_COMPONENTS_ALL host)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS morvith-menu-host)
  set(CPACK_DEBIAN_HOST_PACKAGE_NAME morvith-menu-host)
  set(CPACK_DEBIAN_HOST_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS libmorvith-dataprovider)
  set(CPACK_DEBIAN_HOST_DESCRIPTION
    "Menu host for data providers, without a television\n\
The menu_host command, which shows and sets the keyboard page, and stand-ins for the device's\n\
registry, system information, log and file system, with device profiles.")
endif()

include(CPack)
