install(TARGETS quav quav-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quav)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# example.org belongs to nobody; a distributor puts an address of theirs here.
set(CPACK_PACKAGE_CONTACT "The Quav Workbench developers <quav@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "workbench for people who keep music without loss")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Turns whole folders of recordings from WAV or AIFF into FLAC and back, several
files at a time, and carries the tags over. Writes and verifies MD5, ST5 and
FFP checksum files and tests FLAC, APE, WavPack and TTA files. Nothing is
overwritten or deleted unasked.
.
There is a window, quav, and a command line for scripts and servers, quav-cli.
Encoders and decoders for Monkey's Audio, True Audio and Shorten and a
shntool for today's formats come with them, in /usr/libexec/quav/tools.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
# What the programs are linked with, and what they load or call without being linked with it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "flac, libqt6svg6, qt6-qpa-plugins")
# The other tools that the tabs call.
set(recommended ${QUAV_TOOL_PACKAGES})
list(REMOVE_ITEM recommended flac)
# Qt's own words, on the buttons of its dialogs.
list(APPEND recommended qt6-translations-l10n)
list(JOIN recommended ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# What Debian asks of a package and an installation by hand does not need.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)
set(CPACK_QUAV_SOURCES ${PROJECT_SOURCE_DIR})
include(CPack)
