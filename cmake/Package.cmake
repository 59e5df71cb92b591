# The Debian package: `cpack -G DEB` in the build folder, or the `package` target. Only the
# program, the calculator tool, the template, the help pages and the desktop files go in.
set(CPACK_PACKAGE_NAME slipbook)
set(CPACK_PACKAGE_VENDOR "Slipbook developers")
set(CPACK_PACKAGE_CONTACT "Slipbook developers <slipbook@example.org>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://slipbook.example.org/")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "logbook for drag racers")
set(CPACK_PACKAGE_DESCRIPTION "Slipbook keeps a drag racer's logbook: cars, tracks, events and \
every run, with its time slip, the weather and its air figures, and the car's whole tune-up. It \
counts maintenance in runs, keeps the expenses, and its calculators turn the weather and past runs \
into a number to act on now.")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries' packages come from dpkg-shlibdeps (dpkg-dev).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
