# The archive library as LibZip::LibZip.
#
# On Windows its own CMake package is used, which knows whether zlib is to be linked too. Elsewhere it is looked for
# by its files: there its own package also wants programs that are packaged apart.
if(NOT TARGET LibZip::LibZip)
  if(WIN32)
    find_package(libzip CONFIG QUIET)
    if(libzip_FOUND)
      add_library(LibZip::LibZip INTERFACE IMPORTED)
      target_link_libraries(LibZip::LibZip INTERFACE libzip::zip)
      set(LibZip_LIBRARY libzip::zip)
    endif()
  else()
    find_path(LibZip_INCLUDE_DIR zip.h)
    find_library(LibZip_LIBRARY zip)
    mark_as_advanced(LibZip_INCLUDE_DIR LibZip_LIBRARY)
    if(LibZip_INCLUDE_DIR AND LibZip_LIBRARY)
      add_library(LibZip::LibZip INTERFACE IMPORTED)
      target_include_directories(LibZip::LibZip INTERFACE "${LibZip_INCLUDE_DIR}")
      target_link_libraries(LibZip::LibZip INTERFACE "${LibZip_LIBRARY}")
    endif()
  endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibZip REQUIRED_VARS LibZip_LIBRARY)
