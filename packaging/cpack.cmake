# Settings of CPack: a ".deb" on Linux, a disk image on macOS. "./package" runs it.

set(CPACK_PACKAGE_NAME orvandel)
set(CPACK_PACKAGE_VENDOR "Velmora Orvandel")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "reader of iTunes backups that recovers what they contain")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

if(APPLE)
  set(CPACK_GENERATOR DragNDrop)
  set(CPACK_DMG_SLA_USE_RESOURCE_FILE_LICENSE OFF)  # newer systems lack the tools that attach it
  set(CPACK_PACKAGE_FILE_NAME "Velmora Orvandel ${PROJECT_VERSION}")
  set(CPACK_STRIP_FILES OFF)  # it would invalidate the ad-hoc signatures of macdeployqt
else()
  set(CPACK_GENERATOR DEB)
  # With a staging folder apart from the prefix, so that the policy gets the true path of the program.
  set(CPACK_SET_DESTDIR ON)
  set(CPACK_INSTALL_PREFIX /usr)
  set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/debian/dependencies.cmake)
  set(CPACK_ORVANDEL_PROGRAMS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})

  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  # The authors have no address yet; the domain is reserved for documentation (RFC 2606).
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Velmora Orvandel authors <authors@orvandel.example>")
  set(CPACK_DEBIAN_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/postrm)
  string(CONCAT CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Orvandel opens an iTunes backup of an iPhone or iPad, shows what it contains,\n"
    "and recovers what you choose: photos, videos, messages with their\n"
    "attachments, contacts, call history, notes. Encrypted backups are opened with\n"
    "their password. The backup is never changed.\n"
    ".\n"
    "The package has a window, orvandel, and a command line, orvandel-cli.")
endif()
include(CPack)
