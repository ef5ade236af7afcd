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
# service sees and no more; everything outside the service core <zvservice/name.h>.
set(ZVCTRL_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)

function(zvctrl_public_headers folder)
  file(MAKE_DIRECTORY ${ZVCTRL_INCLUDE_DIR}/${folder})
  foreach(header IN LISTS ARGN)
    cmake_path(GET header FILENAME name)
    cmake_path(ABSOLUTE_PATH header)
    file(CREATE_LINK ${header} ${ZVCTRL_INCLUDE_DIR}/${folder}/${name} SYMBOLIC)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
  endforeach()
endfunction()

# One part of the library: its sources as objects, compiled once, its public headers, and the folders of its rooms, in
# which its own sources find each other's headers by name.
function(zvctrl_library_part name)
  cmake_parse_arguments(PART "" "" "SOURCES;HEADERS;ROOMS" ${ARGN})
  list(TRANSFORM PART_ROOMS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  add_library(${name} OBJECT ${PART_SOURCES})
  set_target_properties(${name} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${name} PRIVATE -fno-semantic-interposition -fno-plt)
  target_include_directories(${name} PUBLIC ${PART_ROOMS})
  target_link_libraries(${name} PUBLIC zvctrl_protocol csi PRIVATE zvctrl_options)
  zvctrl_public_headers(zvctrl ${PART_HEADERS})
endfunction()

# A shared library of these objects, which is installed. Nothing interposes our functions: calls inside a library stay
# inside, and each symbol that need not be looked up makes loading faster. The standard library's templates bring
# visibility of their own; the map keeps them inside. What a library keeps lives as long as the process, such as the
# catalogue, or a thread that a peer keeps from ending: it is never unloaded.
function(zvctrl_shared_library name)
  add_library(${name} SHARED ${ARGN})
  add_library(zvctrl::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES SOVERSION 1 VERSION ${PROJECT_VERSION} LINKER_LANGUAGE CXX)
  target_compile_features(${name} INTERFACE cxx_std_17)
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:zvctrl_options> rt)
  target_link_options(${name} PRIVATE
    LINKER:-Bsymbolic-functions
    LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map
    LINKER:-z,relro LINKER:-z,now LINKER:-z,nodelete LINKER:--as-needed
  )
  if(NOT ZVCTRL_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
  install(TARGETS ${name} EXPORT zvctrl DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# The pkg-config file of a library, with the prefix as seen from the file, so that an installed tree can be moved.
function(zvctrl_pkg_config name)
  file(RELATIVE_PATH ZVCTRL_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# The parsers of options and of JSON are all templates: to optimise them costs the build more than anything else, and for
# speed it makes a program larger by a third.
function(zvctrl_parser_sources)
  set_source_files_properties(${ARGN} PROPERTIES
    COMPILE_OPTIONS "$<$<CONFIG:Debug,RelWithDebInfo>:-O0>;$<$<CONFIG:Release>:-Os>")
endfunction()
