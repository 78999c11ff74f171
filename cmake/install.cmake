# What is installed, in three parts: what a host loads, what its builder needs, and the command.
include(CMakePackageConfigHelpers)

install(TARGETS korlit EXPORT korlit COMPONENT library
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# Only its sibling loads it: it stands in no folder that all programs look into.
install(TARGETS ostrelix COMPONENT library DESTINATION ${CMAKE_INSTALL_LIBDIR}/korlit)

install(FILES api/exports.h COMPONENT development
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korlit)
set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/korlit)
install(EXPORT korlit FILE korlit-config.cmake NAMESPACE korlit:: COMPONENT development
    DESTINATION ${config_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/korlit-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/korlit-config-version.cmake COMPONENT development
    DESTINATION ${config_folder})
# From its own place, so that it holds wherever it is installed.
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/korlit.pc.in ${CMAKE_BINARY_DIR}/korlit.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/korlit.pc COMPONENT development
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS korlit_command COMPONENT command)
install(FILES ${share}/korlit.1 COMPONENT command DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${share}/korlit.bash RENAME korlit COMPONENT command
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${share}/_korlit COMPONENT command
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
install(FILES ${share}/korlit.fish COMPONENT command
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -P ${CMAKE_SOURCE_DIR}/cmake/uninstall.cmake
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR})
