# Warnings, hardening and instruments of every target of this project, attached through lomaris_add_library and friends.

add_library(lomaris_options INTERFACE)
target_include_directories(lomaris_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(lomaris_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Werror
  # So that the linker can leave out what no program calls.
  -ffunction-sections -fdata-sections
  # False alarms of g++ 12 over moved variants and over strings that are appended to; the sanitizers watch instead.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# What a program must be linked with that is made of these objects; that of a host of an installed copy, too.
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

# lomaris_small_program(name): for a program that may live for milliseconds: it has no time to load what nothing in it
# calls, or the C++ runtime from elsewhere.
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

# lomaris_add_library(name source...): a static library of this project. Its options are not those of programs that link
# an installed copy.
function(lomaris_add_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:lomaris_options>)
endfunction()
