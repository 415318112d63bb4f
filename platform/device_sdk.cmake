# Uses the libraries of the device SDK instead of the stand-ins. Set CMAKE_PREFIX_PATH,
# CMAKE_SYSROOT or CMAKE_FIND_ROOT_PATH to the folder of the SDK. If a library has another name, set
# its variable MORVITH_kvreg_LIBRARY, MORVITH_devinfo_LIBRARY or MORVITH_qlog_LIBRARY to the path of
# the file.

set(missing "")
foreach(name kvreg devinfo qlog)
  find_path(MORVITH_${name}_INCLUDE_DIR ${name}.h PATH_SUFFIXES usr/include)
  find_library(MORVITH_${name}_LIBRARY ${name}
    PATH_SUFFIXES usr/lib usr/lib/${CMAKE_LIBRARY_ARCHITECTURE})
  if(NOT MORVITH_${name}_LIBRARY)
    string(APPEND missing "\n  lib${name}.so (MORVITH_${name}_LIBRARY)")
  endif()
  cmake_path(GET MORVITH_${name}_LIBRARY PARENT_PATH directory)
  cmake_path(GET MORVITH_${name}_LIBRARY FILENAME file)
  list(APPEND MORVITH_PLATFORM_LIBRARY_DIRECTORIES ${directory})
  add_library(platform_${name} INTERFACE)
  add_library(platform::${name} ALIAS platform_${name})
  # Link by file name: if the library has no SONAME, the linker would record the full path.
  target_link_directories(platform_${name} INTERFACE ${directory})
  target_link_libraries(platform_${name} INTERFACE -l:${file})
  if(MORVITH_${name}_INCLUDE_DIR)
    target_include_directories(platform_${name} INTERFACE ${MORVITH_${name}_INCLUDE_DIR})
  else()  # this project's header declares the same functions
    target_include_directories(platform_${name} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR}/${name})
  endif()
endforeach()

if(missing)
  message(FATAL_ERROR
    "not found in the device SDK:${missing}\n"
    "Set CMAKE_PREFIX_PATH or CMAKE_SYSROOT to the root of the SDK, or set the variable in brackets "
    "to the library's file. To build without an SDK, set MORVITH_PLATFORM to stand-in.")
endif()
