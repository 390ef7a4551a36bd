# What goes along with programs and libraries: documents, and the two ways in which another build finds an
# installation. Programs and libraries themselves are installed where they are defined.
include(CMakePackageConfigHelpers)

# --- Documents ------------------------------------------------------------------------------------

set(_documents README.md SECURITY.md CONTRIBUTING.md)
foreach(_document IN LISTS _documents)
  set(_file "${PROJECT_SOURCE_DIR}/${_document}")
  if(XMLPLUGIN_DEBIAN) # where two of the files that these lead to have the distribution's names
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${_file}")
    file(READ "${_file}" _text)
    string(REPLACE "](LICENSE)" "](copyright)" _text "${_text}")
    string(REPLACE "](CHANGELOG.md)" "](changelog.gz)" _text "${_text}")
    set(_file "${PROJECT_BINARY_DIR}/debian/${_document}")
    file(WRITE "${_file}" "${_text}")
  endif()
  install(FILES "${_file}" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endforeach()
install(DIRECTORY docs/ DESTINATION "${CMAKE_INSTALL_DOCDIR}/docs" FILES_MATCHING PATTERN "*.md" PATTERN "*.svg"
  PATTERN "man" EXCLUDE)
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DOCDIR}")
if(NOT XMLPLUGIN_DEBIAN)
  install(FILES LICENSE CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endif()
if(XMLPLUGIN_BUILD_HOST)
  if(NOT XMLPLUGIN_DEBIAN) # where it is compressed
    install(FILES docs/man/xmlvalue.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  endif()
  install(FILES src/host/completion/xmlvalue.bash DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
    RENAME xmlvalue)
endif()

# --- For other builds -----------------------------------------------------------------------------

# A platform that is no part of this build has an installation of its own.
get_target_property(_is_foreign platform_base IMPORTED)
if(_is_foreign)
  return()
endif()

# The codes that a host gets, with their texts.
install(FILES src/common/xmlproxy/XmlErrorCodes.h DESTINATION "${XMLPLUGIN_INSTALL_INCLUDEDIR}/xmlproxy")

# find_package looks beside each bin folder of PATH, the build's own too, but not in a folder of this name.
set(_made "${PROJECT_BINARY_DIR}/to-install")

install(EXPORT XmlPluginTargets NAMESPACE XmlPlugin:: DESTINATION "${XMLPLUGIN_INSTALL_PACKAGEDIR}")
configure_package_config_file(cmake/XmlPluginConfig.cmake.in "${_made}/XmlPluginConfig.cmake"
  INSTALL_DESTINATION "${XMLPLUGIN_INSTALL_PACKAGEDIR}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${_made}/XmlPluginConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${_made}/XmlPluginConfig.cmake" "${_made}/XmlPluginConfigVersion.cmake"
  DESTINATION "${XMLPLUGIN_INSTALL_PACKAGEDIR}")

# Paths in the file for pkg-config are written from its own folder, so that an installation can be moved.
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" OUTPUT_VARIABLE _pc_folder)
cmake_path(APPEND _pc_folder pkgconfig)
file(RELATIVE_PATH XMLPLUGIN_PC_PREFIX "${_pc_folder}" "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH XMLPLUGIN_PC_LIBDIR "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH XMLPLUGIN_PC_PLUGINDIR "${CMAKE_INSTALL_PREFIX}" "${XMLPLUGIN_INSTALL_FULL_PLUGINDIR}")
file(RELATIVE_PATH XMLPLUGIN_PC_INCLUDEDIR "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}/xmlplugin")
configure_file(cmake/xmlplugin.pc.in "${PROJECT_BINARY_DIR}/xmlplugin.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/xmlplugin.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
