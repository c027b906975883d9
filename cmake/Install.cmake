# Installs the tool, and the library with its headers and its CMake package.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(LOMARIS_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/lomaris-macos-bridge)
set(LOMARIS_KEEPER_INSTALL_DIR ${CMAKE_INSTALL_LIBEXECDIR}/lomaris-macos-bridge)
set(LOMARIS_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/LomarisMacOSAccessibility)

# lomaris_export(target name): exports the target as Lomaris::name in the package.
function(lomaris_export target name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(${target} INTERFACE cxx_std_20)
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${LOMARIS_HEADER_DIR}>)
  install(TARGETS ${target} EXPORT LomarisMacOSAccessibilityTargets)
endfunction()

# Hosts link the first one, which depends on the others.
lomaris_export(lomaris_accessibility Accessibility)
lomaris_export(lomaris_platform Platform)
lomaris_export(lomaris_native_platform NativePlatform)
lomaris_export(lomaris_keeping Keeping)
lomaris_export(lomaris_posix Posix)
lomaris_export(lomaris_json Json)
lomaris_export(lomaris_text Text)
install(EXPORT LomarisMacOSAccessibilityTargets NAMESPACE Lomaris:: DESTINATION ${LOMARIS_PACKAGE_DIR})

# The path of the program that keeps the clipboard for hosts; only Linux has one.
set(LOMARIS_PACKAGE_KEEPER "")
if(TARGET lomaris-clipboard-keeper)
  set(LOMARIS_PACKAGE_KEEPER ${LOMARIS_KEEPER_INSTALL_DIR}/lomaris-clipboard-keeper)
  install(TARGETS lomaris-clipboard-keeper RUNTIME DESTINATION ${LOMARIS_KEEPER_INSTALL_DIR})
endif()

configure_package_config_file(
  cmake/LomarisMacOSAccessibilityConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/LomarisMacOSAccessibilityConfig.cmake
  INSTALL_DESTINATION ${LOMARIS_PACKAGE_DIR}
  PATH_VARS LOMARIS_PACKAGE_KEEPER
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/package/LomarisMacOSAccessibilityConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/LomarisMacOSAccessibilityConfig.cmake
  ${PROJECT_BINARY_DIR}/package/LomarisMacOSAccessibilityConfigVersion.cmake
  cmake/FindUtf8proc.cmake
  DESTINATION ${LOMARIS_PACKAGE_DIR})

# The headers that hosts include. InstallHeaders.cmake finds the headers that these include.
set(LOMARIS_HOST_HEADERS
  accessibility/model/bridge_error.h
  accessibility/model/capture_trace.h
  accessibility/model/guard_trace.h
  accessibility/service/accessibility_service.h
  accessibility/service/app_selection_session.h
  platform/native_platform.h
  text/utf8.h)
install(CODE "
  set(LOMARIS_SOURCE_DIR \"${PROJECT_SOURCE_DIR}\")
  set(LOMARIS_HOST_HEADERS \"${LOMARIS_HOST_HEADERS}\")
  set(LOMARIS_HEADER_DIR \"${LOMARIS_HEADER_DIR}\")")
install(SCRIPT cmake/InstallHeaders.cmake)

install(TARGETS lomaris-macos-bridge)
