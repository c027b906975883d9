# What makes an error in the code harder to turn against the user: position independence, a stack that is guarded and not
# executable, tables that are read-only once the program is loaded, and checked calls of the C library. Sanitizers look
# closer and want to see the plain calls.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# lomaris_compile_option(flag): for every target, where the compiler has it.
function(lomaris_compile_option flag)
  string(MAKE_C_IDENTIFIER "LOMARIS_COMPILES${flag}" has)
  # A flag of another processor is only warned of.
  set(CMAKE_REQUIRED_FLAGS -Werror)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    target_compile_options(lomaris_options INTERFACE ${flag})
  endif()
endfunction()

# lomaris_link_option(flag): for every program, where the linker has it.
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
  # Each kind of processor has one of these. Apple's protects branches for programs of the system alone.
  lomaris_compile_option(-fcf-protection)
  lomaris_compile_option(-mbranch-protection=standard)
  # macOS has no such options: there, all of it is always so.
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
  # The C library checks only what the optimiser has looked at, and says so aloud otherwise.
  set(optimised $<NOT:$<CONFIG:Debug>>)
  target_compile_options(lomaris_options INTERFACE
    $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=${fortify}>)
endif()
