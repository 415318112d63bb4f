# Lets all users enter the installed folders. A strict umask restricts the folders that CMake
# creates, even with CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS.
cmake_policy(VERSION 3.25)  # an install script has no policies of its own
set(top ${CMAKE_INSTALL_PREFIX})
if(NOT "$ENV{DESTDIR}" STREQUAL "")
  set(top /)  # of the stage
endif()
set(folders "")
foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
  cmake_path(GET file PARENT_PATH folder)
  cmake_path(IS_PREFIX top ${folder} is_installed)
  while(is_installed AND NOT $ENV{DESTDIR}${folder} IN_LIST folders)
    list(APPEND folders $ENV{DESTDIR}${folder})
    cmake_path(GET folder PARENT_PATH folder)
    cmake_path(IS_PREFIX top ${folder} is_installed)
  endwhile()
endforeach()
if(folders)
  execute_process(COMMAND chmod go+rx ${folders} COMMAND_ERROR_IS_FATAL ANY)
endif()
