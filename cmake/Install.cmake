# Install rules and the Debian package (`make package`).
#
# Every destination follows the install prefix, so the same build installs for
# one user, for all users, or into the package:
#
#   <program folder>/norvale-setup                 the program
#   <program folder>/norvale-cli, norvale-netsim   the other programs, once they are targets
#   <program folder>/norvale-pdf.so                what norvale-cli paints PDF reports with
#   <program folder>/Registry.reg                  written by the install, read beside the program
#   <program folder>/Setup.ini                     written there by the program itself
#   <prefix>/bin/norvale-setup, ...                a relative link to each program
#   <prefix>/share/applications/norvale-setup.desktop
#   <prefix>/share/icons/hicolor/*/apps/norvale-setup.{png,svg}
#   <prefix>/share/mime/packages/norvale-setup.xml (".nvl" files)
#   <prefix>/share/doc/norvale-setup/examples      the demo network's file and scenario
#
# The program keeps "Setup.ini" beside itself, so the default prefix is ~/.local,
# where the user owns every folder; the package uses /usr, where the program's
# folder is read-only and the program starts all the same, without its settings.
#
# The program folder is <prefix>/lib/norvale-setup, except under a prefix named
# ".local", a user's: there it is NorvaleSetup in the folder holding the prefix
# (~/NorvaleSetup). The file dialog starts in the program folder and a save's
# backup name is the path cut at its first dot, so under ~/.local every
# configuration kept there would be backed up to one ~/.bak. The folder is chosen
# when installing, so that `cmake --install --prefix` chooses it too.

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
set(NORVALE_INSTALL_USER_PROGRAMDIR "NorvaleSetup" CACHE STRING
    "The program's own folder under a prefix named .local, relative to the folder holding it")
foreach(dir NORVALE_INSTALL_PROGRAMDIR NORVALE_INSTALL_USER_PROGRAMDIR
            CMAKE_INSTALL_BINDIR CMAKE_INSTALL_DATAROOTDIR)
    if(IS_ABSOLUTE "${${dir}}")
        # The launcher links and the package need the whole layout to move with the prefix.
        message(FATAL_ERROR "${dir} must be relative to the install prefix, not ${${dir}}")
    endif()
endforeach()
foreach(dir NORVALE_INSTALL_PROGRAMDIR NORVALE_INSTALL_USER_PROGRAMDIR)
    if("${${dir}}" MATCHES "[.]")
        message(FATAL_ERROR "${dir} must have no dot: a save's backup name is cut at the first one")
    endif()
endforeach()

# The programs of the program folder: the other two as soon as their targets
# exist (defined before this file is included). The desktop entry starts the first.
set(norvale_program_files "$<TARGET_FILE:norvale-setup>")
foreach(program norvale-cli norvale-netsim)
    if(TARGET ${program})
        list(APPEND norvale_program_files "$<TARGET_FILE:${program}>")
    endif()
endforeach()
# Beside them, without a link: the module norvale-cli loads to paint PDF reports.
set(norvale_module_files "")
if(TARGET norvale-pdf)
    set(norvale_module_files "$<TARGET_FILE:norvale-pdf>")
endif()

# The program folder is known only when installing, so the programs, their links,
# the registry file and the desktop entry are installed by scripts.
install(CODE "set(norvale_program_files \"${norvale_program_files}\")")
install(CODE "set(norvale_module_files \"${norvale_module_files}\")")
configure_file(${CMAKE_CURRENT_LIST_DIR}/InstallProgram.cmake.in
               ${CMAKE_CURRENT_BINARY_DIR}/install/InstallProgram.cmake @ONLY)
install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/install/InstallProgram.cmake)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/desktop/icons/hicolor
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons FILES_MATCHING PATTERN "norvale-setup.png")
install(FILES ${PROJECT_SOURCE_DIR}/desktop/icons/norvale-setup.svg
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/desktop/norvale-setup.xml
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/mime/packages)
# What the emulator and the command line are first tried with, away from the source tree.
install(FILES ${PROJECT_SOURCE_DIR}/examples/demo.nvl ${PROJECT_SOURCE_DIR}/examples/demo-air.ini
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/norvale-setup/examples)
# The desktop entry names the program by its full installed path; the script
# also refreshes the desktop's caches.
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
# assembled, so the program folder is /usr/lib/norvale-setup and the desktop
# entry names /usr/lib/norvale-setup/norvale-setup.
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
# Without shared-mime-info ".nvl" files are not recognised, so a double-click does
# not open them; without a system-information tool the About box has none to start.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "shared-mime-info, hardinfo | kinfocenter | gnome-system-monitor")
# The registry file is written on the target machine, for the tool found there.
set(NORVALE_PACKAGE_PROGRAM_DIR "${CPACK_PACKAGING_INSTALL_PREFIX}/${NORVALE_INSTALL_PROGRAMDIR}")
file(READ ${CMAKE_CURRENT_LIST_DIR}/registry-writer.sh NORVALE_REGISTRY_WRITER)
file(READ ${PROJECT_SOURCE_DIR}/resources/Registry.reg NORVALE_REGISTRY_TEMPLATE)
# file(READ) reads the template's CR LF line ends as LF; the heredoc ends in one.
string(REGEX REPLACE "\n$" "" NORVALE_REGISTRY_TEMPLATE "${NORVALE_REGISTRY_TEMPLATE}")
string(REPLACE "\n" "\r\n" NORVALE_REGISTRY_TEMPLATE "${NORVALE_REGISTRY_TEMPLATE}\r")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${CMAKE_CURRENT_LIST_DIR}/registry-writer.sh ${PROJECT_SOURCE_DIR}/resources/Registry.reg)
foreach(script postinst postrm)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/${script}.in
                   ${CMAKE_CURRENT_BINARY_DIR}/debian/${script} @ONLY)
    list(APPEND CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_BINARY_DIR}/debian/${script})
endforeach()
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
