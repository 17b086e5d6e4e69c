# cmake --install: the program with what it looks for beside itself, and the core as a library for programs of others.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The program finds its windows and its manual in its own folder, wherever that is moved to. A link makes it a command.
set(own_folder ${CMAKE_INSTALL_LIBDIR}/kalvex)
install(TARGETS kalvex RUNTIME DESTINATION ${own_folder})
if(KALVEX_WINDOWS)
  install(TARGETS kalvex_windows LIBRARY DESTINATION ${own_folder})
  install(FILES ${PROJECT_BINARY_DIR}/Manual.pdf DESTINATION ${own_folder})
endif()
file(RELATIVE_PATH from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/kalvex/kalvex)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/install)
file(CREATE_LINK ${from_bin} ${PROJECT_BINARY_DIR}/install/kalvex SYMBOLIC)
install(FILES ${PROJECT_BINARY_DIR}/install/kalvex DESTINATION ${CMAKE_INSTALL_BINDIR})

# #include <kalvex/session/session.h>; the headers name each other from the folder kalvex on.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kalvex
        FILES_MATCHING PATTERN "*.h" PATTERN app EXCLUDE PATTERN manual EXCLUDE PATTERN qt EXCLUDE)
set_target_properties(kalvex_core PROPERTIES EXPORT_NAME core)
install(TARGETS kalvex_core EXPORT KalvexTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${CMAKE_INSTALL_INCLUDEDIR}/kalvex)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Kalvex)
install(EXPORT KalvexTargets NAMESPACE Kalvex:: DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/install/KalvexConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/KalvexConfig.cmake ${PROJECT_BINARY_DIR}/install/KalvexConfigVersion.cmake
        DESTINATION ${package_folder})
