# Installs the native library: every room as a static library, the headers below include/zelkon-plot, and a package that
# other projects find; the command without its symbols; and the licences of what is linked in. The rooms name their include folders in the source tree; a consumer gets the installed one instead.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/zelkon-plot)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/zelkon-plot)

set(rooms "")
foreach(room foundation coregraphics coretext coreimage quartzcore appkit webkit classes common cairo headless)
  set(target zelkon_${room})
  get_target_property(includes ${target} INTERFACE_INCLUDE_DIRECTORIES)
  set(exported "$<INSTALL_INTERFACE:${headers}>")
  foreach(include ${includes})
    list(APPEND exported "$<BUILD_INTERFACE:${include}>")
  endforeach()
  set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${exported}" EXPORT_NAME ${room})
  list(APPEND rooms ${target})
endforeach()

# As --strip does, which leaves static libraries alone.
install(CODE "set(CMAKE_INSTALL_DO_STRIP ON)")
install(TARGETS ${rooms} EXPORT zelkon-plot ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS zelkon-plot RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
include(${CMAKE_CURRENT_LIST_DIR}/ThirdParty.cmake)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_BINARY_DIR}/THIRD-PARTY.txt DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Platform/ DESTINATION ${headers} FILES_MATCHING PATTERN *.h)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Classes DESTINATION ${headers} FILES_MATCHING PATTERN *.h)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Hosts/Common ${PROJECT_SOURCE_DIR}/Hosts/Headless DESTINATION ${headers}/Hosts FILES_MATCHING PATTERN *.h)

install(EXPORT zelkon-plot NAMESPACE zelkon:: FILE zelkon-plotTargets.cmake DESTINATION ${package})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zelkon-plotConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zelkon-plotConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zelkon-plotConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zelkon-plotConfig.cmake ${PROJECT_BINARY_DIR}/zelkon-plotConfigVersion.cmake
  DESTINATION ${package})
