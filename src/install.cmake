# What `cmake --install` puts under the prefix for C++ clients: the shared
# library, every public header, a CMake package (find_package(SeluVorneDS
# CONFIG) gives SeluVorneDS::seluvorne) and a pkg-config file (seluvorne.pc).
# The layers' static libraries are inside libseluvorne and are not installed;
# their dependencies (SQLite, Qt, ...) are the shared library's own, so a
# client links SeluVorneDS::seluvorne and nothing else.
include(CMakePackageConfigHelpers)

set(SELUVORNE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/SeluVorneDS)

install(TARGETS seluvorne EXPORT SeluVorneDSTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/seluvorne
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
install(EXPORT SeluVorneDSTargets
  NAMESPACE SeluVorneDS::
  DESTINATION ${SELUVORNE_CMAKE_DIR})

configure_package_config_file(
  ${CMAKE_CURRENT_SOURCE_DIR}/SeluVorneDSConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/SeluVorneDSConfig.cmake
  INSTALL_DESTINATION ${SELUVORNE_CMAKE_DIR})
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(
  ${CMAKE_CURRENT_BINARY_DIR}/SeluVorneDSConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/SeluVorneDSConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/SeluVorneDSConfigVersion.cmake
  DESTINATION ${SELUVORNE_CMAKE_DIR})

# The .pc file names its folders relative to its own place, so that a copy
# installed with --prefix anywhere (or moved) still points at itself.
file(RELATIVE_PATH pc_to_prefix
  /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/seluvorne.pc.in
  ${CMAKE_CURRENT_BINARY_DIR}/seluvorne.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/seluvorne.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
