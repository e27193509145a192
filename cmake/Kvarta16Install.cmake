# How the libraries are installed: files, the CMake package and the pkg-config modules. Include it
# once the install folders are known (GNUInstallDirs).
#
# The parts that a Debian package is made of are tool, library (what is shared) and development;
# `cmake --install` without a part installs them all.

set(kvarta16_config_folder "${CMAKE_INSTALL_LIBDIR}/cmake/kvarta16")
set(kvarta16_module_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
set(kvarta16_object_folder "${CMAKE_INSTALL_LIBDIR}/kvarta16")

# kvarta16_install_library(TARGET NAME): the library, for other projects kvarta16::NAME.
function(kvarta16_install_library target name)
  set_target_properties(${target} PROPERTIES
                        EXPORT_NAME ${name} VERSION ${PROJECT_VERSION}
                        SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
  add_library(kvarta16::${name} ALIAS ${target})
  install(TARGETS ${target} EXPORT kvarta16-${name}
          LIBRARY COMPONENT library NAMELINK_COMPONENT development
          ARCHIVE COMPONENT development)
  install(EXPORT kvarta16-${name} NAMESPACE kvarta16:: COMPONENT development
          DESTINATION "${kvarta16_config_folder}" FILE kvarta16-${name}-targets.cmake)
endfunction()

# kvarta16_install_component(TARGET NAME DESCRIPTION text [PACKAGE SQLite3 3.37] [WITH sql]
#                            [REQUIRES sqlite3] [LIBS -lcups]): a library that programs ask for by
# its name. PACKAGE is what find_package gets, REQUIRES the pkg-config module or, where the system
# has none, LIBS what is linked, of what a static library leaves to the program; WITH is another
# library of this project, of the same kind. A shared one has all of that in itself.
function(kvarta16_install_component target name)
  cmake_parse_arguments(PARSE_ARGV 2 its "" "DESCRIPTION;WITH;REQUIRES" "PACKAGE;LIBS")
  kvarta16_install_library(${target} ${name})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "SHARED_LIBRARY")
    set(its_PACKAGE)
    set(its_WITH)
    set(its_REQUIRES)
    set(its_LIBS)
  endif()

  set(finding)
  if(its_PACKAGE)
    list(JOIN its_PACKAGE " " package)
    string(APPEND finding "find_dependency(${package})\n")
  endif()
  foreach(library IN LISTS its_WITH ITEMS ${name})
    string(APPEND finding "include(\"\${CMAKE_CURRENT_LIST_DIR}/kvarta16-${library}-targets.cmake\")\n")
  endforeach()
  if(TARGET ${target}_default)
    configure_file("${PROJECT_SOURCE_DIR}/packaging/registration.cmake.in"
                   "${CMAKE_BINARY_DIR}/packages/kvarta16-${name}-registration.cmake" @ONLY)
    install(FILES "${CMAKE_BINARY_DIR}/packages/kvarta16-${name}-registration.cmake"
            COMPONENT development DESTINATION "${kvarta16_config_folder}")
    string(APPEND finding
           "include(\"\${CMAKE_CURRENT_LIST_DIR}/kvarta16-${name}-registration.cmake\")\n")
  endif()
  file(WRITE "${CMAKE_BINARY_DIR}/packages/kvarta16-${name}.cmake" "${finding}")

  set(libs "-L\${libdir} -l${target}")
  if(TARGET ${target}_default)
    string(PREPEND libs "\${libdir}/kvarta16/${target}_default.o ")
  endif()
  if(its_WITH)
    string(APPEND libs " -lkvarta16_${its_WITH}")
  endif()
  set(module kvarta16)
  set(requires)
  if(NOT name STREQUAL "kvarta16")
    set(module kvarta16-${name})
    set(requires kvarta16 ${its_REQUIRES})
  endif()
  list(JOIN requires " " requires)
  list(JOIN its_LIBS " " others)
  file(RELATIVE_PATH up "/${kvarta16_module_folder}" "/")
  string(REGEX REPLACE "/$" "" up "${up}")
  configure_file("${PROJECT_SOURCE_DIR}/packaging/module.pc.in"
                 "${CMAKE_BINARY_DIR}/packages/${module}.pc" @ONLY)

  install(FILES "${CMAKE_BINARY_DIR}/packages/kvarta16-${name}.cmake" COMPONENT development
          DESTINATION "${kvarta16_config_folder}")
  install(FILES "${CMAKE_BINARY_DIR}/packages/${module}.pc" COMPONENT development
          DESTINATION "${kvarta16_module_folder}")
  set_property(GLOBAL APPEND PROPERTY kvarta16_components ${name})
endfunction()

# kvarta16_registers_itself(TARGET SOURCE): a program that links the adapter has it in its default
# platform. The registration is an object of the program itself: from a static library a linker
# would leave it out, and a shared one that nothing else asks for as well.
function(kvarta16_registers_itself target source)
  set(object ${target}_default)
  add_library(${object} OBJECT ${source})
  kvarta16_target_defaults(${object})
  target_link_libraries(${object} PUBLIC kvarta16)
  set_target_properties(${object} PROPERTIES POSITION_INDEPENDENT_CODE ${BUILD_SHARED_LIBS})
  target_link_libraries(${target} INTERFACE
                        "$<BUILD_INTERFACE:$<TARGET_OBJECTS:${object}>>"
                        "$<INSTALL_INTERFACE:$<TARGET_OBJECTS:kvarta16::${object}>>")
  install(FILES "$<TARGET_OBJECTS:${object}>" RENAME ${object}.o COMPONENT development
          DESTINATION "${kvarta16_object_folder}")
endfunction()

# kvarta16_public_headers(FILE...): the headers, by their names from src on, that other projects
# include.
function(kvarta16_public_headers)
  foreach(header IN LISTS ARGN)
    get_filename_component(room "${header}" DIRECTORY)
    install(FILES "${PROJECT_SOURCE_DIR}/src/${header}" COMPONENT development
            DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvarta16/${room}")
  endforeach()
  set_property(GLOBAL APPEND PROPERTY kvarta16_public_headers ${ARGN})
endfunction()

# The CMake package of all components, when they are known.
function(kvarta16_install_package)
  include(CMakePackageConfigHelpers)
  get_property(components GLOBAL PROPERTY kvarta16_components)
  configure_package_config_file("${PROJECT_SOURCE_DIR}/packaging/kvarta16-config.cmake.in"
                                "${CMAKE_BINARY_DIR}/packages/kvarta16-config.cmake"
                                INSTALL_DESTINATION "${kvarta16_config_folder}"
                                NO_SET_AND_CHECK_MACRO)
  write_basic_package_version_file("${CMAKE_BINARY_DIR}/packages/kvarta16-config-version.cmake"
                                   COMPATIBILITY SameMajorVersion)
  install(FILES "${CMAKE_BINARY_DIR}/packages/kvarta16-config.cmake"
                "${CMAKE_BINARY_DIR}/packages/kvarta16-config-version.cmake"
          COMPONENT development DESTINATION "${kvarta16_config_folder}")
endfunction()
