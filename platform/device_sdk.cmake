# Uses the libraries of the device SDK instead of the stand-ins. CMAKE_PREFIX_PATH must contain the
# SDK.

set(missing "")
foreach(name kvreg devinfo qlog)
  find_path(MORVITH_${name}_INCLUDE_DIR ${name}.h)
  find_library(MORVITH_${name}_LIBRARY ${name})
  if(NOT MORVITH_${name}_INCLUDE_DIR)
    string(APPEND missing "\n  ${name}.h")
  endif()
  if(NOT MORVITH_${name}_LIBRARY)
    string(APPEND missing "\n  lib${name}.so")
  endif()
  cmake_path(GET MORVITH_${name}_LIBRARY PARENT_PATH directory)
  list(APPEND MORVITH_PLATFORM_LIBRARY_DIRECTORIES ${directory})
  add_library(platform::${name} UNKNOWN IMPORTED GLOBAL)
  set_target_properties(platform::${name} PROPERTIES
    IMPORTED_LOCATION "${MORVITH_${name}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${MORVITH_${name}_INCLUDE_DIR}")
endforeach()

if(missing)
  message(FATAL_ERROR
    "MORVITH_PLATFORM is 'device', but the device SDK lacks:${missing}\n"
    "Set CMAKE_PREFIX_PATH to the SDK's sysroot, or leave MORVITH_PLATFORM at 'stand-in'.")
endif()
