# Options that make bugs harder to exploit: position-independent code, stack protection, a non-executable stack,
# read-only relocations and checked calls of the C library. The sanitizers need the unchecked calls.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# lomaris_compile_option(flag): adds the flag to all targets if the compiler supports it.
function(lomaris_compile_option flag)
  string(MAKE_C_IDENTIFIER "LOMARIS_COMPILES${flag}" has)
  # For a flag of another processor the compiler only warns.
  set(CMAKE_REQUIRED_FLAGS -Werror)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    target_compile_options(lomaris_options INTERFACE ${flag})
  endif()
endfunction()

# lomaris_link_option(flag): adds the flag to all programs if the linker supports it.
function(lomaris_link_option flag)
  string(MAKE_C_IDENTIFIER "LOMARIS_LINKS${flag}" has)
  check_linker_flag(CXX ${flag} ${has})
  if(${has})
    target_link_options(lomaris_options INTERFACE ${flag})
  endif()
endfunction()

lomaris_compile_option(-fstack-protector-strong)
lomaris_compile_option(-fstack-clash-protection)
if(NOT APPLE)
  # Each processor architecture supports at most one of these. Apple's compiler uses its own for system programs only.
  lomaris_compile_option(-fcf-protection)
  lomaris_compile_option(-mbranch-protection=standard)
  # Not available on macOS, where all of it is always on.
  foreach(keyword IN ITEMS relro now noexecstack)
    lomaris_link_option(-Wl,-z,${keyword})
  endforeach()
endif()

if(NOT LOMARIS_SANITIZE)
  check_cxx_source_compiles("
    #if !__has_builtin(__builtin_dynamic_object_size)
    #error
    #endif
    int main() {}" LOMARIS_MEASURES_OBJECTS)
  if(LOMARIS_MEASURES_OBJECTS)
    set(fortify 3)
  else()
    set(fortify 2)
  endif()
  # _FORTIFY_SOURCE requires optimization; without it, the C library prints a warning.
  set(optimised $<NOT:$<CONFIG:Debug>>)
  target_compile_options(lomaris_options INTERFACE
    $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=${fortify}>)
endif()
