# Warnings, hardening and instrumentation of all targets of this project, which lomaris_add_library and similar
# functions attach.

add_library(lomaris_options INTERFACE)
target_include_directories(lomaris_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(lomaris_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Werror
  # Lets the linker omit unused functions and data.
  -ffunction-sections -fdata-sections
  # False positives of g++ 12 for moved variants and for string appends; the sanitizers check these instead.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# Link options that a program with these objects needs, including a host that links the installed library.
set(LOMARIS_INSTRUMENTS "")
if(LOMARIS_SANITIZE)
  list(APPEND LOMARIS_INSTRUMENTS -fsanitize=${LOMARIS_SANITIZE})
  target_compile_options(lomaris_options INTERFACE -fno-sanitize-recover=all -fno-omit-frame-pointer)
endif()
if(LOMARIS_COVERAGE)
  list(APPEND LOMARIS_INSTRUMENTS --coverage)
  target_compile_options(lomaris_options INTERFACE -fprofile-abs-path -fprofile-update=atomic)
endif()
target_compile_options(lomaris_options INTERFACE ${LOMARIS_INSTRUMENTS})
target_link_options(lomaris_options INTERFACE ${LOMARIS_INSTRUMENTS})
if(LOMARIS_FUZZ)
  target_compile_options(lomaris_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
include(cmake/Hardening.cmake)

# lomaris_small_program(name): reduces the start-up time of a program that may run for only milliseconds. Links the C++
# runtime statically, and only what the program uses.
function(lomaris_small_program name)
  if(LOMARIS_SANITIZE)
    return()
  endif()
  if(APPLE)
    target_link_options(${name} PRIVATE -Wl,-dead_strip)
  else()
    target_link_options(${name} PRIVATE
      -static-libstdc++ -static-libgcc -Wl,--as-needed -Wl,--gc-sections -Wl,-O1)
  endif()
endfunction()

# lomaris_add_library(name source...): adds a static library of this project. Programs that link an installed copy do
# not inherit its options.
function(lomaris_add_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:lomaris_options>)
  add_dependencies(${name} lomaris_layers)
endfunction()

# lomaris_add_room(name source...): the objects of one folder of a library, so that the folder states which others it
# uses. `lomaris_layers` checks that its includes say the same.
function(lomaris_add_room name)
  add_library(${name} OBJECT ${ARGN})
  target_link_libraries(${name} PUBLIC lomaris_options)
  add_dependencies(${name} lomaris_layers)
endfunction()
