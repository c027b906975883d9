# Finds utf8proc (Unicode tables) as Utf8proc::Utf8proc, for this project and for hosts that link its library. Prefers
# the static library, so that the tool starts without loading a shared one.

find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(PC_UTF8PROC QUIET libutf8proc)
endif()
find_path(UTF8PROC_INCLUDE_DIR utf8proc.h HINTS ${PC_UTF8PROC_INCLUDE_DIRS} ${PC_UTF8PROC_INCLUDEDIR})
find_library(UTF8PROC_LIBRARY NAMES libutf8proc.a utf8proc HINTS ${PC_UTF8PROC_LIBRARY_DIRS} ${PC_UTF8PROC_LIBDIR})
mark_as_advanced(UTF8PROC_INCLUDE_DIR UTF8PROC_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Utf8proc REQUIRED_VARS UTF8PROC_LIBRARY UTF8PROC_INCLUDE_DIR)

if(Utf8proc_FOUND AND NOT TARGET Utf8proc::Utf8proc)
  add_library(Utf8proc::Utf8proc UNKNOWN IMPORTED)
  set_target_properties(Utf8proc::Utf8proc PROPERTIES
    IMPORTED_LOCATION "${UTF8PROC_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${UTF8PROC_INCLUDE_DIR}"
    INTERFACE_COMPILE_DEFINITIONS UTF8PROC_STATIC)
endif()
