# The Debian package. `tools/package` builds it as it is to be handed out.
set(STROKEMIND_MAINTAINER "The Strokemind developers <developers@strokemind.org>" CACHE STRING
  "Who answers for the package, with an address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME strokemind)
set(CPACK_PACKAGE_VENDOR "The Strokemind developers")
set(CPACK_PACKAGE_CONTACT ${STROKEMIND_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mouse gestures that run commands, type texts and open programs")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Hold the right mouse button anywhere on the screen, draw, release: the stroke
is compared with the patterns that you have saved, and the action bound to the
closest one runs at once. A plain right click stays a right click.
.
An action opens a program or a document, types a text, or does one of a list
of things to the windows on the screen.
.
The interface is in French. It needs an X11 session.")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
# Absolute destinations, as that of the entry that starts the program with a session, lead into the package.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Documents and addresses are handed to xdg-open.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(STROKEMIND_AUTOSTART)
  file(WRITE ${CMAKE_BINARY_DIR}/packaging/conffiles "/etc/xdg/autostart/${program_id}.desktop\n")
  set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/packaging/conffiles)
endif()

configure_file(packaging/debian/changelog.in packaging/changelog.Debian @ONLY)
configure_file(packaging/debian/copyright.in packaging/copyright @ONLY)
set(CPACK_STROKEMIND_DEBIAN ${CMAKE_BINARY_DIR}/packaging)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/packaging/debian/finish.cmake)
include(CPack)
