# Installs the command without its symbols; the library for other programs: one archive, the headers of include/zelkon,
# a CMake package and a pkg-config file; and the licences of what is linked in.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/zelkon-plot)

# As --strip does, which leaves static libraries alone.
install(CODE "set(CMAKE_INSTALL_DO_STRIP ON)")
install(TARGETS zelkon-plot RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
include(${CMAKE_CURRENT_LIST_DIR}/ThirdParty.cmake)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_BINARY_DIR}/THIRD-PARTY.txt DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(TARGETS zelkon_plot EXPORT zelkon-plot
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zelkon DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)

install(EXPORT zelkon-plot NAMESPACE zelkon:: FILE zelkon-plotTargets.cmake DESTINATION ${package})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zelkon-plotConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zelkon-plotConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelkon-plotConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zelkon-plotConfig.cmake ${PROJECT_BINARY_DIR}/zelkon-plotConfigVersion.cmake
  DESTINATION ${package})

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig
  OUTPUT_VARIABLE ZELKON_PREFIX_OF_PC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/zelkon-plot.pc.in ${PROJECT_BINARY_DIR}/zelkon-plot.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zelkon-plot.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
