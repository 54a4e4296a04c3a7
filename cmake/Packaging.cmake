# The Debian package, built by scripts/package.sh: the installed tree under /usr, stripped, with
# its library dependencies taken by dpkg-shlibdeps from the Debian packages that provide them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvelo)
set(CPACK_PACKAGE_VENDOR Mirenthalic)
set(CPACK_PACKAGE_CONTACT "Mirenthalic <support@mirenthalic.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "control program of the Tarvelo stimulus and reaction box")
set(CPACK_PACKAGE_DESCRIPTION "Writes test scripts, keeps a register of subjects, runs sessions
on the Tarvelo box over its serial port, shows the live report and exports
the results as XLSX, CSV and PDF.

The box emulator tarvelo-devsim comes along, for trying the program without
a box.")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The icons are drawn by Qt's SVG plugins, which the program loads without linking them, so
# dpkg-shlibdeps can't see that package.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5svg5 (>= 5.15)")
# Qt's own dialogs in the operator's language.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qttranslations5-l10n)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Installing and packing never build: `cmake --install` doesn't either, and CPack would otherwise
# walk every target of the test suite before it packs (scripts/package.sh builds first).
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
include(CPack)
