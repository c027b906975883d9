# Third-party libraries. Each is a Debian and a Homebrew package; `./dev setup` installs them.

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

# Unicode tables: normalisation and grapheme breaks. Linked statically where the archive is there, so that the tool
# starts without looking for it.
pkg_check_modules(UTF8PROC REQUIRED libutf8proc)
find_library(LOMARIS_UTF8PROC_LIBRARY NAMES libutf8proc.a utf8proc
             HINTS ${UTF8PROC_LIBRARY_DIRS} ${UTF8PROC_LIBDIR} REQUIRED)
add_library(lomaris_utf8proc INTERFACE)
target_include_directories(lomaris_utf8proc SYSTEM INTERFACE ${UTF8PROC_INCLUDE_DIRS})
target_compile_definitions(lomaris_utf8proc INTERFACE UTF8PROC_STATIC)
target_link_libraries(lomaris_utf8proc INTERFACE ${LOMARIS_UTF8PROC_LIBRARY})

# JSON parsing (header only).
find_path(LOMARIS_RAPIDJSON_INCLUDE_DIR rapidjson/reader.h REQUIRED)
add_library(lomaris_rapidjson INTERFACE)
target_include_directories(lomaris_rapidjson SYSTEM INTERFACE ${LOMARIS_RAPIDJSON_INCLUDE_DIR})

if(LOMARIS_BUILD_TESTS)
  find_package(GTest REQUIRED)
  find_package(nlohmann_json REQUIRED)
endif()
if(LOMARIS_BUILD_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()
