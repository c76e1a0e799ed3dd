# Installing the library for hosts:
#   <prefix>/lib/liborlexui.so*                      the shared library
#   <prefix>/include/orlexui/orlexui.h               the umbrella header
#   <prefix>/include/orlexui/<folder>/...h           the public headers, by folder
#   <prefix>/lib/cmake/orlexui/                      find_package(orlexui) -> orlexui::orlexui
#   <prefix>/lib/pkgconfig/orlexui.pc                pkg-config --cflags --libs orlexui
# A host compiles with include directory <prefix>/include/orlexui and writes
# #include <orlexui.h>.

include(CMakePackageConfigHelpers)

set(ORLEXUI_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/orlexui)
set(ORLEXUI_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/orlexui)

install(TARGETS orlexui EXPORT orlexuiTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${ORLEXUI_INSTALL_INCLUDEDIR})

# Public headers of every library folder, keeping the folder structure. Private headers
# (*_p.h) hold Qt types and stay in the build tree.
foreach(_dir foundation plot plotcontrol colour imageview cursors imageframe grid panel)
  if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${_dir})
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${_dir}/
      DESTINATION ${ORLEXUI_INSTALL_INCLUDEDIR}/${_dir}
      FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)
  endif()
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/orlexui.h DESTINATION ${ORLEXUI_INSTALL_INCLUDEDIR})

install(EXPORT orlexuiTargets NAMESPACE orlexui:: DESTINATION ${ORLEXUI_INSTALL_CMAKEDIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/orlexuiConfig.cmake.in
  ${PROJECT_BINARY_DIR}/orlexuiConfig.cmake
  INSTALL_DESTINATION ${ORLEXUI_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orlexuiConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orlexuiConfig.cmake ${PROJECT_BINARY_DIR}/orlexuiConfigVersion.cmake
  DESTINATION ${ORLEXUI_INSTALL_CMAKEDIR})

# pkg-config: the prefix is taken from the file's own place, so the tree can be moved.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(ORLEXUI_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
  file(RELATIVE_PATH ORLEXUI_PC_LIBDIR "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_LIBDIR}")
else()
  string(REGEX REPLACE "[^/]+" ".." _up "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  set(ORLEXUI_PC_PREFIX "\${pcfiledir}/${_up}")
  set(ORLEXUI_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/orlexui.pc.in ${PROJECT_BINARY_DIR}/orlexui.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orlexui.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
