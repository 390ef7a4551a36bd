# Cross build for 64-bit Windows with Debian's g++-mingw-w64-x86-64-posix. The compiler's run-time libraries go
# into every program and library, so that nothing but system DLLs and our own is needed to run them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(_triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${_triplet}-windres)

foreach(_kind EXE SHARED MODULE)
  set(CMAKE_${_kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()
set(ZLIB_USE_STATIC_LIBS ON)

# What scripts/windows-deps.sh built.
if(NOT XMLPLUGIN_WINDOWS_DEPS)
  if(DEFINED ENV{XMLPLUGIN_CACHE})
    set(_cache "$ENV{XMLPLUGIN_CACHE}")
  else()
    cmake_path(SET _cache NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../../.cache")
  endif()
  set(XMLPLUGIN_WINDOWS_DEPS "${_cache}/windows-deps/current")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES XMLPLUGIN_WINDOWS_DEPS)

# Programs are the build machine's; headers, libraries and packages are the target's.
set(CMAKE_FIND_ROOT_PATH "${XMLPLUGIN_WINDOWS_DEPS}" /usr/${_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs of the target run here under Wine.
cmake_path(SET CMAKE_CROSSCOMPILING_EMULATOR NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../../scripts/run-wine.sh")
