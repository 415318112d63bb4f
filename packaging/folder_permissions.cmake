# Lets everyone enter the installed folders: a strict umask also restricts the folders that CMake
# creates, even with CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS.
set(folders "")
foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
  cmake_path(GET file PARENT_PATH folder)
  while(folder MATCHES "^${CMAKE_INSTALL_PREFIX}")
    list(APPEND folders "$ENV{DESTDIR}${folder}")
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
endforeach()
list(REMOVE_DUPLICATES folders)
if(folders)
  execute_process(COMMAND chmod go+rx ${folders} COMMAND_ERROR_IS_FATAL ANY)
endif()
