# `cpack` makes a Debian package of what `cmake --install` installs. Included last.
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION share/doc/ferrit-reelpath RENAME copyright)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ferrit-reelpath)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tape-saturation audio effect, VST 3 plug-in")
set(CPACK_PACKAGE_DESCRIPTION "Recording gain with automatic makeup, saturation of adjustable hardness,
feedback response, high-frequency emphasis and flutter, for hosts of VST 3
plug-ins.")
set(CPACK_PACKAGE_CONTACT "Tessmark <support@tessmark.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
