# What lies where after an installation. The program looks for its library, guard and font beside itself, where the link
# that is called has led; and it names the user's file after itself, so that it keeps its own name there.
include(GNUInstallDirs)
# The module would name the folder after the project, with its capital; what the one who builds says stands.
if("$CACHE{CMAKE_INSTALL_DOCDIR}" STREQUAL "")
  set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/strokemind)
endif()
set(program_id org.strokemind.strokemind)  # of the desktop entry; the program tells it to the desktop as well
set(program_folder ${CMAKE_INSTALL_LIBEXECDIR}/strokemind)

install(TARGETS Strokemind strokemind_guard strokemind_hook
  RUNTIME DESTINATION ${program_folder} LIBRARY DESTINATION ${program_folder})
install(FILES assets/OCRAEXT.TTF DESTINATION ${program_folder})
# Relative, so that the whole may be moved.
file(RELATIVE_PATH program_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/strokemind/Strokemind)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/packaging)
file(CREATE_LINK ${program_from_bin} ${CMAKE_BINARY_DIR}/packaging/strokemind SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/packaging/strokemind DESTINATION ${CMAKE_INSTALL_BINDIR})

install(FILES packaging/${program_id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/${program_id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
set(icon_folder ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size 16 22 24 32 48 64 128)
  install(FILES assets/icons/strokemind-on-${size}.png DESTINATION ${icon_folder}/${size}x${size}/apps
    RENAME ${program_id}.png)
endforeach()
install(FILES packaging/icons/strokemind-256.png DESTINATION ${icon_folder}/256x256/apps RENAME ${program_id}.png)
install(FILES assets/icons/strokemind-on.svg DESTINATION ${icon_folder}/scalable/apps RENAME ${program_id}.svg)
install(FILES packaging/icons/strokemind-symbolic.svg DESTINATION ${icon_folder}/symbolic/apps
  RENAME ${program_id}-symbolic.svg)

# For whoever wants it, to be put into his own folder; and for everybody, where the one who builds says so.
install(FILES packaging/autostart.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/strokemind)
if(STROKEMIND_AUTOSTART)
  install(FILES packaging/autostart.desktop DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/xdg/autostart
    RENAME ${program_id}.desktop)
endif()
if(EXISTS ${CMAKE_SOURCE_DIR}/assets/example)
  install(DIRECTORY assets/example DESTINATION ${CMAKE_INSTALL_DATADIR}/strokemind)
endif()

install(FILES packaging/man/strokemind.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/man/fr/strokemind.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/fr/man1)
install(FILES packaging/man/Strokemind.AI.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)
if(EXISTS ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
  install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()
