# `cpack` in a build tree makes the Debian package; `cpack --config CPackSourceConfig.cmake` the
# source archive. Programs are stripped there.
set(MURN_MAINTAINER "The Murn developers <murn@example.org>" CACHE STRING
    "Who answers for the package: name and address")
configure_file("${PROJECT_SOURCE_DIR}/packaging/changelog.in" changelog @ONLY)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/copyright" "${CMAKE_CURRENT_BINARY_DIR}/changelog"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/murn")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME murn)
set(CPACK_PACKAGE_VENDOR "The Murn developers")
set(CPACK_PACKAGE_CONTACT "${MURN_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tag, rate and find documents where they lie")
set(CPACK_PACKAGE_DESCRIPTION
"Murn organises documents without moving them into a database: files stay in
their folders, and tags and star ratings are kept on the files themselves,
where other programs find them too. The same can be done from the shell.")
# By DESTDIR, so that files that name places (murn_install_with_places) see those of the package.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/compress.cmake")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is started, or loaded by name, and so is not seen in the programs.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6svg6, shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "pkexec, xdg-utils, qt6-image-formats-plugins, qt6-translations-l10n, qt6-wayland, dbus-user-session")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "chromium, tesseract-ocr, attr")

set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "murn-${PROJECT_VERSION}")
set(CPACK_SOURCE_IGNORE_FILES "/build/;/\\\\.git(/|$)")
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
