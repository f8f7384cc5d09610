# The programs where a desktop looks for them, and the Debian package. Needs the targets vesk and vesk-scan, VESK_ICONS
# and VESK_RELEASE_DATE.
include(GNUInstallDirs)

set(source ${CMAKE_CURRENT_LIST_DIR})
set(made ${CMAKE_CURRENT_BINARY_DIR}/linux)
set(id app.vesk.Vesk)

# Pages and changelogs are installed compressed, as Debian has it.
set(compressed "")
function(compressed_file name from)
  add_custom_command(OUTPUT ${made}/${name}
    COMMAND python3 ${source}/compress.py ${from} ${made}/${name}
    DEPENDS ${from} ${source}/compress.py VERBATIM)
  set(compressed ${compressed} ${made}/${name} PARENT_SCOPE)
endfunction()
file(MAKE_DIRECTORY ${made})
configure_file(${source}/${id}.metainfo.xml.in ${made}/${id}.metainfo.xml @ONLY)
foreach(program vesk vesk-scan)
  configure_file(${source}/${program}.1.in ${made}/${program}.1 @ONLY)
  compressed_file(${program}.1.gz ${made}/${program}.1)
endforeach()
add_custom_command(OUTPUT ${made}/changelog.Debian
  COMMAND python3 ${source}/debian_changelog.py ${CMAKE_SOURCE_DIR}/CHANGELOG.md
    ${CPACK_PACKAGE_CONTACT} ${made}/changelog.Debian
  DEPENDS ${CMAKE_SOURCE_DIR}/CHANGELOG.md ${source}/debian_changelog.py VERBATIM)
compressed_file(changelog.Debian.gz ${made}/changelog.Debian)
compressed_file(changelog.gz ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
add_custom_target(documents ALL DEPENDS ${compressed})
add_dependencies(installed vesk vesk-scan documents)

install(TARGETS vesk vesk-scan RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${source}/${id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${made}/${id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${made}/vesk.1.gz ${made}/vesk-scan.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${source}/copyright ${made}/changelog.Debian.gz ${made}/changelog.gz
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vesk)
set(theme ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${source}/../icon/vesk.svg DESTINATION ${theme}/scalable/apps RENAME ${id}.svg)
foreach(side 16 24 32 48 64 128 256)
  install(FILES ${VESK_ICONS}/${side}.png DESTINATION ${theme}/${side}x${side}/apps RENAME ${id}.png)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Vesk looks where programs leave things behind in your home folder, and shows
each find as a card: what it is, what removing it costs, how long it has been
unused.
What you tick goes to the Trash, and you can undo a cleanup from the history.
A preview shows the result without moving anything.")
# Shared libraries are found by their names in the programs; QML modules and plugins are not. They are those that
# src/ui imports, and what these load in turn.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "qml6-module-qtqml, qml6-module-qtqml-workerscript, qml6-module-qtquick, qml6-module-qtquick-layouts, qml6-module-qtquick-templates, qml6-module-qtquick-window, qt6-svg-plugins | libqt6svg6 (<< 6.8)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-quicksand")
