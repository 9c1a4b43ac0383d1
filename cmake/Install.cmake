include(CMakePackageConfigHelpers)

install(TARGETS ZeKL EXPORT ZeKLTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZeKL)
install(FILES ${PROJECT_BINARY_DIR}/generated/include/ZeKL/ZeKLExport.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZeKL)
install(EXPORT ZeKLTargets NAMESPACE ZeKL:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZeKL)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZeKLConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZeKLConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZeKL)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZeKLConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZeKLConfig.cmake ${PROJECT_BINARY_DIR}/ZeKLConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZeKL)

# The .pc file finds the prefix from its own place (${pcfiledir}), so that an install with
# `cmake --install <build> --prefix <dir>` works as well as the configured prefix.
set(ZEKL_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE "${ZEKL_PC_DIR}")
  set(ZEKL_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH zekl_pc_up "/zekl-root/${ZEKL_PC_DIR}" "/zekl-root")
  string(REGEX REPLACE "/$" "" zekl_pc_up "${zekl_pc_up}")
  set(ZEKL_PC_PREFIX "\${pcfiledir}/${zekl_pc_up}")
endif()
foreach(kind LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${kind}}")
    set(ZEKL_PC_${kind} "${CMAKE_INSTALL_${kind}}")
  else()
    set(ZEKL_PC_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
  endif()
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/zekl.pc.in ${PROJECT_BINARY_DIR}/zekl.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zekl.pc DESTINATION ${ZEKL_PC_DIR})
