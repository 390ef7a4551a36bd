# Where an installation puts what GNUInstallDirs has no folder for.
include(GNUInstallDirs)

set(XMLPLUGIN_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/xmlplugin")
set(XMLPLUGIN_INSTALL_PACKAGEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/XmlPlugin")

# The plug-in is no library to link with, so it lies apart; on Windows beside the programs, for there a library finds
# others only in its own folder and in the program's.
if(WIN32)
  set(XMLPLUGIN_INSTALL_PLUGINDIR "${CMAKE_INSTALL_BINDIR}")
else()
  set(XMLPLUGIN_INSTALL_PLUGINDIR "${CMAKE_INSTALL_LIBDIR}/xmlplugin")
endif()
cmake_path(ABSOLUTE_PATH XMLPLUGIN_INSTALL_PLUGINDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}"
  OUTPUT_VARIABLE XMLPLUGIN_INSTALL_FULL_PLUGINDIR)
file(RELATIVE_PATH XMLPLUGIN_PLUGIN_TO_LIBRARIES "${XMLPLUGIN_INSTALL_FULL_PLUGINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
