# Installs LOMARIS_HOST_HEADERS of LOMARIS_SOURCE_DIR, and all headers of the project that they include directly or
# indirectly, to LOMARIS_HEADER_DIR, with the directory structure of the source.

cmake_policy(VERSION 3.22)

set(waiting ${LOMARIS_HOST_HEADERS})
set(found "")
while(waiting)
  list(POP_FRONT waiting header)
  if(NOT header IN_LIST found)
    list(APPEND found ${header})
    file(STRINGS "${LOMARIS_SOURCE_DIR}/${header}" lines REGEX "^#include \"")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" included "${line}")
      list(APPEND waiting ${included})
    endforeach()
  endif()
endwhile()

if(NOT IS_ABSOLUTE "${LOMARIS_HEADER_DIR}")
  string(PREPEND LOMARIS_HEADER_DIR "${CMAKE_INSTALL_PREFIX}/")
endif()
foreach(header IN LISTS found)
  get_filename_component(folder ${header} DIRECTORY)
  file(INSTALL "${LOMARIS_SOURCE_DIR}/${header}" DESTINATION "${LOMARIS_HEADER_DIR}/${folder}" TYPE FILE)
endforeach()
