# Installs the build into WORK, checks that everything is there, and moves it to PREFIX: what names its own place by
# an absolute path is found out by those who use it there.
# Needs: BUILD, WORK, PREFIX, VERSION, MAJOR and the folders BINDIR, LIBDIR, INCLUDEDIR, MANDIR, DATADIR, DOCDIR below a prefix.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}" "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}" COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

set(expected
  "${BINDIR}/xmlvalue"
  "${LIBDIR}/xmlplugin/XmlPlugin.so"
  "${LIBDIR}/xmlplugin/XmlPluginXerces.so"
  "${LIBDIR}/cmake/XmlPlugin/XmlPluginConfig.cmake"
  "${LIBDIR}/cmake/XmlPlugin/XmlPluginConfigVersion.cmake"
  "${LIBDIR}/cmake/XmlPlugin/XmlPluginTargets.cmake"
  "${LIBDIR}/pkgconfig/xmlplugin.pc"
  "${INCLUDEDIR}/xmlplugin/xmlproxy/XmlErrorCodes.h"
  "${MANDIR}/man1/xmlvalue.1"
  "${DATADIR}/bash-completion/completions/xmlvalue"
  "${DOCDIR}/README.md"
  "${DOCDIR}/CONTRIBUTING.md"
  "${DOCDIR}/LICENSE"
  "${DOCDIR}/CHANGELOG.md"
  "${DOCDIR}/docs/host-guide.md"
  "${DOCDIR}/examples/host/host.cpp"
)
foreach(library IN ITEMS base sdk trace zip)
  list(APPEND expected "${LIBDIR}/libxmlplugin-${library}.so.${VERSION}")
endforeach()
if(EXISTS "${WORK}/${LIBDIR}/libxmlplugin-zip.so")
  message(SEND_ERROR "libxmlplugin-zip.so is installed, with which nobody links")
endif()
# All headers of the platform, whatever they are called.
file(GLOB headers RELATIVE "${CMAKE_CURRENT_LIST_DIR}/../../src/platform" "${CMAKE_CURRENT_LIST_DIR}/../../src/platform/*/*.h")
foreach(header IN LISTS headers)
  list(APPEND expected "${INCLUDEDIR}/xmlplugin/${header}")
endforeach()
foreach(file IN LISTS expected)
  if(NOT EXISTS "${WORK}/${file}")
    message(SEND_ERROR "not installed: ${file}")
  endif()
endforeach()

# Versioned: a program is linked with the plain name, and looks for the name with the major version when it runs.
foreach(library IN ITEMS base sdk trace)
  foreach(link IN ITEMS ".so:.so.${MAJOR}" ".so.${MAJOR}:.so.${VERSION}")
    string(REPLACE ":" ";" ends "${link}")
    list(TRANSFORM ends PREPEND "libxmlplugin-${library}")
    list(POP_FRONT ends name target)
    file(READ_SYMLINK "${WORK}/${LIBDIR}/${name}" found)
    if(NOT found STREQUAL target)
      message(SEND_ERROR "${name} leads to ${found}, not to ${target}")
    endif()
  endforeach()
endforeach()

file(RENAME "${WORK}" "${PREFIX}")
