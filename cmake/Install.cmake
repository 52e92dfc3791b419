# SPDX-License-Identifier: Apache-2.0
# Installing, and what finds the installed library: find_package(platen) and pkg-config.

include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/platen)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/platen TYPE INCLUDE FILES_MATCHING PATTERN *.h)
install(TARGETS platen platen-headers EXPORT platen)
if(PLATEN_SHARED)
  set(pc_requires "")
  set(pc_libs "-L\${libdir} -lplaten")
  set(pc_cflags "-I\${includedir}")
else()
  install(TARGETS platen-archive EXPORT platen)
  list(JOIN PLATEN_PKG_CONFIG_NAMES ", " pc_requires)
  # In one word, so that pkg-config cannot sort it apart.
  set(pc_libs "-Wl,--whole-archive,\${libdir}/libplaten.a,--no-whole-archive")
  set(pc_cflags "-I\${includedir} -DPLATEN_STATIC")
endif()

install(EXPORT platen NAMESPACE platen:: FILE platenTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/platenConfig.cmake.in platenConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
# A release that breaks the interface or the binary form raises the major version, which is also
# that of the shared library's name.
write_basic_package_version_file(platenConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/platenConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/platenConfigVersion.cmake
              ${PROJECT_SOURCE_DIR}/cmake/Dependencies.cmake DESTINATION ${package_dir})

install(FILES LICENSE README.md CHANGELOG.md TYPE DOC)

# Found relative to itself, so that an installed tree may be moved.
file(RELATIVE_PATH pc_up /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/platen.pc.in platen.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/platen.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
