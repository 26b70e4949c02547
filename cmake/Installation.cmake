# find_package(dibkit), dibkit.pc and the headers. Installed headers keep their folders below include/dibkit, so
# that <dibkit.h> and "dib/dib.h" mean the same inside and outside of the project.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

install(
  TARGETS dibkit
  EXPORT dibkitTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dibkit)
if(TARGET dibkit-cli)
  # The program finds the library wherever both are moved to.
  if(DIBKIT_SHARED AND NOT WIN32)
    file(RELATIVE_PATH toLibrary ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(dibkit-cli PROPERTIES INSTALL_RPATH $<IF:$<PLATFORM_ID:Darwin>,@loader_path,$ORIGIN>/${toLibrary})
  endif()
  install(TARGETS dibkit-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# The public headers: the umbrella, and what each folder's CMakeLists.txt adds to this property.
get_property(headers GLOBAL PROPERTY DIBKIT_PUBLIC_HEADERS)
foreach(header IN LISTS headers)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES src/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dibkit/${folder})
endforeach()

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/dibkit)
install(
  EXPORT dibkitTargets
  NAMESPACE dibkit::
  DESTINATION ${packageDir})
configure_package_config_file(cmake/dibkitConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/dibkitConfig.cmake
                              INSTALL_DESTINATION ${packageDir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/dibkitConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/dibkitConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/dibkitConfigVersion.cmake DESTINATION ${packageDir})

# The package stays usable when it is installed or moved elsewhere than configured.
if(NOT DIBKIT_SHARED)
  set(staticFlag " -DDIBKIT_STATIC")
endif()
if(WIN32)
  set(systemLibraries " -lgdi32 -luser32")
endif()
file(RELATIVE_PATH toPrefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/dibkit.pc.in ${CMAKE_CURRENT_BINARY_DIR}/dibkit.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/dibkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
