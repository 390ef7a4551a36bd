# One interface target carries the warnings and sanitizers of every target of the project.
add_library(xmlplugin_flags INTERFACE)

if(MSVC)
  target_compile_options(xmlplugin_flags INTERFACE /W4 /utf-8 /permissive- /Zc:__cplusplus /Zc:preprocessor
    /wd4251 /wd4275) # private members of exported classes need not be exported
  set(_as_errors /WX)
else()
  target_compile_options(xmlplugin_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
  set(_as_errors -Werror)
endif()
if(XMLPLUGIN_WARNINGS_AS_ERRORS)
  target_compile_options(xmlplugin_flags INTERFACE ${_as_errors})
endif()

if(WIN32)
  target_compile_definitions(xmlplugin_flags INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX=1)
endif()

# refuse_undefined_symbols(TARGET): a module that lacks a function fails when it is linked, not when it is loaded.
function(refuse_undefined_symbols i_Target)
  if(NOT XMLPLUGIN_SANITIZE) # the sanitizers' functions are in the program
    target_link_options(${i_Target} PRIVATE LINKER:-z,defs)
  endif()
endfunction()

if(XMLPLUGIN_SANITIZE)
  target_compile_options(xmlplugin_flags INTERFACE -fsanitize=${XMLPLUGIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_definitions(xmlplugin_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(xmlplugin_flags INTERFACE -fsanitize=${XMLPLUGIN_SANITIZE})
endif()
