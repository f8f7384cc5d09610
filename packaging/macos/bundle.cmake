# Vesk.app and the disk image it comes on. Needs the target vesk, VESK_ICONS, and Qt's deployment.

set_source_files_properties(${VESK_ICONS}/vesk.icns TARGET_DIRECTORY vesk PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
target_sources(vesk PRIVATE ${VESK_ICONS}/vesk.icns)
add_dependencies(vesk icons)
add_dependencies(installed vesk)
set_target_properties(vesk PROPERTIES
  OUTPUT_NAME Vesk
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in)
install(TARGETS vesk BUNDLE DESTINATION .)

# Qt's frameworks, plugins and QML modules go into the bundle when it is installed; a build runs with Qt where it is.
if(Qt6_VERSION VERSION_LESS 6.5)
  qt_generate_deploy_qml_app_script(TARGET vesk FILENAME_VARIABLE deploy_script)
else()
  qt_generate_deploy_qml_app_script(TARGET vesk OUTPUT_SCRIPT deploy_script)
endif()
install(SCRIPT ${deploy_script})

# What was copied in has lost its signatures' validity, and an arm64 Mac runs nothing unsigned. "-" signs for this
# machine only; an identity from the keychain makes a bundle for others.
set(VESK_SIGNING_IDENTITY "-" CACHE STRING "Identity that codesign signs Vesk.app with")
install(CODE "
  find_program(codesign codesign REQUIRED)
  execute_process(COMMAND \${codesign} --force --deep --sign \"${VESK_SIGNING_IDENTITY}\"
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Vesk.app\" COMMAND_ERROR_IS_FATAL ANY)")

set(CPACK_GENERATOR DragNDrop)
set(CPACK_DMG_VOLUME_NAME Vesk)
set(CPACK_PACKAGE_FILE_NAME "Vesk-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
# Stripping would break the signature; a release build of the bundle is small beside Qt.
set(CPACK_STRIP_FILES OFF)
