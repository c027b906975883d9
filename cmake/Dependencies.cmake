# Third-party libraries. Each is a Debian and a Homebrew package; `./dev setup` installs them.

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

# Unicode tables: normalization and grapheme breaks.
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
find_package(Utf8proc REQUIRED)

if(LOMARIS_BUILD_TESTS)
  find_package(GTest REQUIRED)
  find_package(nlohmann_json REQUIRED)
endif()
if(LOMARIS_BUILD_BENCHMARKS)
  find_package(benchmark REQUIRED)
endif()
