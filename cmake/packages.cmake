# What `cpack -G DEB` makes: a package for each part of the installation. The libraries of others that
# they depend on are worked out.
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development command)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The project has no address: who builds packages sets his own, as Debian's tools know it.
set(CPACK_PACKAGE_CONTACT "Korlit maintainers <korlit@packages.invalid>")
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
    set(CPACK_PACKAGE_CONTACT "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()

set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(debian_version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE korlit)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# A host loads libkorlit.so by that name: it belongs to what runs, not to what builds.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libkorlit0)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
file(WRITE ${CMAKE_BINARY_DIR}/debian/shlibs "libkorlit 0 libkorlit0 (>= ${PROJECT_VERSION})\n")
file(WRITE ${CMAKE_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
    ${CMAKE_BINARY_DIR}/debian/shlibs ${CMAKE_BINARY_DIR}/debian/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "library that converts chromatography data
Converts between ANDI files (netCDF classic with the AIA chromatography
template) and the native files of the Merivolta and Dunvale data systems:
one call converts one file. A host loads libkorlit.so by its name.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkorlit-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libkorlit0 (= ${debian_version})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "converter of chromatography data (development files)
The header of libkorlit in plain C, and what pkg-config and CMake need to
build a program with it.")

set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME korlit)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION science)
set(CPACK_DEBIAN_COMMAND_PACKAGE_DEPENDS "libkorlit0 (= ${debian_version})")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_COMPONENT_COMMAND_DESCRIPTION "convert chromatography data and look into it
Converts archives of ANDI files (netCDF classic with the AIA chromatography
template) and native files of the Merivolta and Dunvale data systems, shows
what they hold, draws, checks and compares them.")

# What Debian wants beyond the installation is put into the folders of the packages.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian/complete.cmake)
set(CPACK_KORLIT_SOURCE ${CMAKE_SOURCE_DIR})
set(CPACK_KORLIT_DEBIAN_VERSION ${debian_version})
include(CPack)
