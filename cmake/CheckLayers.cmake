# Fails if a file of the product includes a header of a folder that its own folder does not use, as Layers.cmake says.
#
#     cmake -D ROOT=SOURCE-FOLDER -P cmake/CheckLayers.cmake

cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/Layers.cmake)

file(GLOB_RECURSE files RELATIVE ${ROOT}
  ${ROOT}/text/*.h ${ROOT}/text/*.cpp
  ${ROOT}/json/*.h ${ROOT}/json/*.cpp
  ${ROOT}/platform/*.h ${ROOT}/platform/*.cpp ${ROOT}/platform/*.mm
  ${ROOT}/accessibility/*.h ${ROOT}/accessibility/*.cpp
  ${ROOT}/bridge/*.h ${ROOT}/bridge/*.cpp
  ${ROOT}/simulator/*.h ${ROOT}/simulator/*.cpp)

set(faults "")
foreach(file IN LISTS files)
  set(used "")
  set(isKnown FALSE)
  foreach(layer IN LISTS LOMARIS_LAYERS)
    string(REGEX MATCH "^([^ ]+) <- (.+)$" matched "${layer}")
    string(FIND "${file}" "${CMAKE_MATCH_1}/" position)
    if(position EQUAL 0)
      string(REGEX REPLACE "[ \n]+" ";" used "${CMAKE_MATCH_2}")
      set(isKnown TRUE)
      break()
    endif()
  endforeach()
  if(NOT isKnown)
    list(APPEND faults "${file} is in no folder of cmake/Layers.cmake")
    continue()
  endif()
  file(STRINGS ${ROOT}/${file} includes REGEX "^#include \"")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]+)/[^/\"]+\".*" "\\1" folder "${include}")
    if(NOT folder IN_LIST used)
      list(APPEND faults "${file} includes a header of ${folder}/, which its folder does not use")
    endif()
  endforeach()
endforeach()

if(faults)
  list(JOIN faults "\n" text)
  message(FATAL_ERROR "${text}")
endif()
