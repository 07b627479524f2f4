# Install rules: the header, the shared library, the ormida tool, a pkg-config file and a
# CMake package (find_package(Ormida) gives Ormida::Ormida), and a Debian package of them
# through `cpack -G DEB`. ormida_core is internal and never installed: Ormida64 links it
# privately, whole, so nothing of it reaches the exported target.
include(CMakePackageConfigHelpers)

set(ORMIDA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Ormida)
set(ORMIDA_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The installed tool finds the library beside it in any prefix, not only in the system's
# library folders.
if(NOT WIN32)
  file(RELATIVE_PATH ormida_bin_to_lib
    ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(ormida PROPERTIES INSTALL_RPATH "$ORIGIN/${ormida_bin_to_lib}")
endif()

install(TARGETS Ormida64 EXPORT OrmidaTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
          NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(TARGETS ormida RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(FILES ${PROJECT_SOURCE_DIR}/include/ormida/ormida.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ormida COMPONENT development)
# The word recognizer's stop words and digram tables, and the default entity configuration
# with its word list, found from the library's own path.
file(GLOB ORMIDA_DATA_FILES ${PROJECT_SOURCE_DIR}/data/*.stop ${PROJECT_SOURCE_DIR}/data/*.digram)
install(FILES ${ORMIDA_DATA_FILES} DESTINATION ${CMAKE_INSTALL_DATADIR}/ormida COMPONENT runtime)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/entities
  DESTINATION ${CMAKE_INSTALL_DATADIR}/ormida COMPONENT runtime)
if(WIN32)
  # The export list (MSVC's lib tool makes an import library from it) and the DLL's symbols.
  install(FILES ${PROJECT_BINARY_DIR}/Ormida64.def
    DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  if(CMAKE_OBJCOPY)
    install(FILES $<TARGET_FILE:Ormida64>.debug
      DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT development)
  endif()
endif()

install(EXPORT OrmidaTargets NAMESPACE Ormida:: DESTINATION ${ORMIDA_CMAKE_DIR}
  COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/install/OrmidaConfig.cmake.in
  ${PROJECT_BINARY_DIR}/OrmidaConfig.cmake INSTALL_DESTINATION ${ORMIDA_CMAKE_DIR})
# The ABI version is the major version: any 1.x library serves a caller that asks for 1.y.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrmidaConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrmidaConfig.cmake
  ${PROJECT_BINARY_DIR}/OrmidaConfigVersion.cmake
  DESTINATION ${ORMIDA_CMAKE_DIR} COMPONENT development)

# The pkg-config file finds the prefix from its own place (${pcfiledir}), so it is right
# wherever the tree is installed: `cmake --install --prefix`, the Debian package's /usr, a
# copied folder.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(ORMIDA_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH ormida_pc_to_prefix /prefix/${ORMIDA_PKGCONFIG_DIR} /prefix)
  set(ORMIDA_PC_PREFIX "\${pcfiledir}/${ormida_pc_to_prefix}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/install/ormida.pc.in
  ${PROJECT_BINARY_DIR}/ormida.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ormida.pc
  DESTINATION ${ORMIDA_PKGCONFIG_DIR} COMPONENT development)

# cpack -G DEB: one package with everything above. dpkg-shlibdeps finds the runtime
# packages the library and the tool need (libc6, libstdc++6, libpugixml1v5, libhunspell).
set(CPACK_PACKAGE_NAME ormida)
set(CPACK_PACKAGE_VENDOR "Ormida")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "OCR result processing library: reads, compares and writes OCR layouts")
if(NOT CPACK_PACKAGE_CONTACT)
  set(CPACK_PACKAGE_CONTACT "Ormida developers <ormida@example.org>")
endif()
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# dpkg-shlibdeps must find libOrmida64.so.1, which the tool needs, in the package itself.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
# The word recognizer needs at least one dictionary; English is the default language.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "hunspell-en-us")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "hunspell-de-de")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
