# "cpack" in the build folder builds one Debian package of the whole installation (make deb).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME xmlplugin)
set(CPACK_PACKAGE_CONTACT "XmlPlugin maintainers <maintainers@xmlplugin.example>" CACHE STRING
  "Name and address of the Debian package's maintainer")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "plug-in and tool that read values out of XML files")
set(CPACK_PACKAGE_DESCRIPTION "A host application loads the plug-in, which returns the values that an
XPath-like expression selects in an XML document. The tool xmlvalue does the
same on the command line. Headers and libraries for writing a host are
included.")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# CPack registers the libraries with scripts that call ldconfig; the distribution requires a trigger.
set(_control "${PROJECT_BINARY_DIR}/debian")
set(_shlibs "")
foreach(_library IN ITEMS base sdk trace zip)
  string(APPEND _shlibs "libxmlplugin-${_library} ${PROJECT_VERSION_MAJOR} xmlplugin (>= ${PROJECT_VERSION})\n")
endforeach()
file(WRITE "${_control}/shlibs" "${_shlibs}")
file(WRITE "${_control}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${_control}/shlibs" "${_control}/triggers")

# What the distribution requires in addition to the files of every installation.
set(XMLPLUGIN_DEBIAN_VERSION "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
configure_file(packaging/debian/changelog.in "${_control}/changelog.Debian" @ONLY)
configure_file(CHANGELOG.md "${_control}/changelog" COPYONLY)
configure_file(docs/man/xmlvalue.1 "${_control}/xmlvalue.1" COPYONLY)
find_program(XMLPLUGIN_GZIP gzip REQUIRED)
execute_process(COMMAND "${XMLPLUGIN_GZIP}" --best --no-name --keep --force "${_control}/changelog" "${_control}/changelog.Debian"
    "${_control}/xmlvalue.1"
  COMMAND_ERROR_IS_FATAL ANY)
install(FILES packaging/debian/copyright "${_control}/changelog.gz" "${_control}/changelog.Debian.gz"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(FILES "${_control}/xmlvalue.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES packaging/debian/lintian-overrides DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME xmlplugin)

include(CPack)
