# What every target of the project is built with, and the public headers' one folder.

add_library(zvctrl_options INTERFACE)
target_compile_options(zvctrl_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
# An assertion's text names the file as the tree has it, wherever that was built.
target_compile_options(zvctrl_options INTERFACE -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(ZVCTRL_WERROR)
  target_compile_options(zvctrl_options INTERFACE -Werror)
endif()
if(ZVCTRL_SANITIZE)
  target_compile_options(zvctrl_options INTERFACE -fsanitize=${ZVCTRL_SANITIZE} -fno-omit-frame-pointer
                                                  -fno-sanitize-recover=all)
  target_link_options(zvctrl_options INTERFACE -fsanitize=${ZVCTRL_SANITIZE})
endif()
if(ZVCTRL_COVERAGE)
  target_compile_options(zvctrl_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(zvctrl_options INTERFACE --coverage)
endif()

# Everything outside the library includes <zvctrl/name.h>, in the tree as after an installation, and so sees what a
# service sees and no more.
set(ZVCTRL_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)

function(zvctrl_public_headers)
  file(MAKE_DIRECTORY ${ZVCTRL_INCLUDE_DIR}/zvctrl)
  foreach(header IN LISTS ARGN)
    cmake_path(GET header FILENAME name)
    cmake_path(ABSOLUTE_PATH header)
    file(CREATE_LINK ${header} ${ZVCTRL_INCLUDE_DIR}/zvctrl/${name} SYMBOLIC)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zvctrl)
  endforeach()
endfunction()
