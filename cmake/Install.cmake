# Install rules and the Debian package (`make package`).
#
# Every destination is relative to one prefix, so the same build installs for
# one user, for all users, or into the package:
#
#   <prefix>/lib/norvale-setup/norvale-setup       the program
#   <prefix>/lib/norvale-setup/Registry.reg        the registry example, read beside the program
#   <prefix>/lib/norvale-setup/Setup.ini           written there by the program itself
#   <prefix>/bin/norvale-setup                     relative link to the program
#   <prefix>/share/applications/norvale-setup.desktop
#   <prefix>/share/icons/hicolor/*/apps/norvale-setup.{png,svg}
#   <prefix>/share/mime/packages/norvale-setup.xml (".nvl" files)
#
# The program keeps "Setup.ini" beside itself, so the default prefix is ~/.local,
# a folder the user owns; the package uses /usr, where the program's folder is
# read-only and the program starts all the same, without keeping its settings.

option(NORVALE_INSTALL "Install rules and the Debian package" ${PROJECT_IS_TOP_LEVEL})
if(NOT NORVALE_INSTALL)
    return()
endif()

# Only the first configure sees the initialised default; a prefix given on the
# command line, or changed later in the cache, is kept.
if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT AND DEFINED ENV{HOME} AND NOT "$ENV{HOME}" STREQUAL "")
    set(CMAKE_INSTALL_PREFIX "$ENV{HOME}/.local" CACHE PATH "Install prefix" FORCE)
endif()

include(GNUInstallDirs)
set(NORVALE_INSTALL_PROGRAMDIR "lib/norvale-setup" CACHE STRING
    "The program's own folder, relative to the install prefix")
foreach(dir NORVALE_INSTALL_PROGRAMDIR CMAKE_INSTALL_BINDIR CMAKE_INSTALL_DATAROOTDIR)
    if(IS_ABSOLUTE "${${dir}}")
        # The launcher link and the package need the whole layout to move with the prefix.
        message(FATAL_ERROR "${dir} must be relative to the install prefix, not ${${dir}}")
    endif()
endforeach()

install(TARGETS norvale-setup RUNTIME DESTINATION ${NORVALE_INSTALL_PROGRAMDIR})
install(FILES ${PROJECT_SOURCE_DIR}/resources/Registry.reg DESTINATION ${NORVALE_INSTALL_PROGRAMDIR})

# A relative link works under any prefix and inside the package's staging folder.
# The program still finds its folder through it: applicationDirPath() follows links.
file(RELATIVE_PATH norvale_link_target "/${CMAKE_INSTALL_BINDIR}"
     "/${NORVALE_INSTALL_PROGRAMDIR}/norvale-setup")
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/install)
file(CREATE_LINK ${norvale_link_target} ${CMAKE_CURRENT_BINARY_DIR}/install/norvale-setup SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/install/norvale-setup DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/desktop/icons/hicolor
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons FILES_MATCHING PATTERN "norvale-setup.png")
install(FILES ${PROJECT_SOURCE_DIR}/desktop/icons/norvale-setup.svg
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/desktop/norvale-setup.xml
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/mime/packages)
# The desktop entry names the program by its full installed path, which is known
# only at install time; the script also refreshes the desktop's caches.
configure_file(${CMAKE_CURRENT_LIST_DIR}/InstallDesktopEntry.cmake.in
               ${CMAKE_CURRENT_BINARY_DIR}/install/InstallDesktopEntry.cmake @ONLY)
install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/install/InstallDesktopEntry.cmake)

# The Debian package: the same layout under /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME norvale-setup)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Norvale Setup developers")
set(CPACK_PACKAGE_CONTACT "Norvale Setup developers <dev@norvale.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configuration tool for a network of Norvale satellites")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Norvale Setup describes a radio network of Norvale base stations (satellites)\n"
    "serving hand-held terminals: the serial link, the range of terminal numbers and\n"
    "the satellites. With the network connected it detects satellites, reads back\n"
    "their configuration and status, gives them a new Sat ID, and runs a live test\n"
    "that polls every satellite in turn. Configurations are kept in .nvl files.")
# DESTDIR staging keeps CMAKE_INSTALL_PREFIX at /usr while the package is
# assembled, so the desktop entry names /usr/lib/norvale-setup/norvale-setup.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The Qt 6 run-time packages come from the program's own libraries (dpkg-shlibdeps);
# Debian 12 ships the X11 platform plugin inside libqt6gui6.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Without it ".nvl" files are not recognised, so a double-click does not open them.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
