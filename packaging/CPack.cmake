# Debian package of the installed tree (cpack -G DEB in a build folder, or
# scripts/package.sh for a clean release build).
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tintwright RENAME copyright)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tintwright)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tintwright)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Tintwright developers")
set(CPACK_PACKAGE_CONTACT "The Tintwright developers <tintwright@users.noreply.github.com>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://github.com/tintwright/tintwright")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "screen color picker, converter and contrast checker")
set(CPACK_PACKAGE_DESCRIPTION
"Tintwright is a small color utility for designers and front-end developers.
It picks a color from anywhere on the screen and shows it as HEX, RGB, HSL
and OKLCH, each copied with one click; keeps the last 20 picks in a history;
files colors into named palettes; converts a color typed in one notation
(HEX, RGB, HSL, OKLCH, CMYK) into all the others; and grades two colors for
WCAG contrast.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Shared libraries are found by dpkg-shlibdeps; the plugins Qt loads at run
# time (the X11 platform, the SVG icon engine) are not, so they are named.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6svg6")
# Native Wayland windows, and the screenshot portal that picks colors there.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, xdg-desktop-portal, wl-clipboard")

include(CPack)
