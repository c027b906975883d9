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
if(LOMARIS_SANITIZE)
  target_compile_options(lomaris_options INTERFACE
    -fsanitize=${LOMARIS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lomaris_options INTERFACE -fsanitize=${LOMARIS_SANITIZE})
endif()
if(LOMARIS_FUZZ)
  target_compile_options(lomaris_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(LOMARIS_COVERAGE)
  target_compile_options(lomaris_options INTERFACE --coverage -fprofile-abs-path -fprofile-update=atomic)
  target_link_options(lomaris_options INTERFACE --coverage)
endif()
include(cmake/Hardening.cmake)

# lomaris_add_library(name source...): a static library of this project. Its options are not those of programs that link
# an installed copy.
function(lomaris_add_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:lomaris_options>)
endfunction()
